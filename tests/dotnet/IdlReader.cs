using System;
using System.Collections.Generic;
using System.IO;
using System.Linq;
using System.Text.RegularExpressions;

namespace Morquil.Tests
{
    /// <summary>A reading of the interface definitions of its own, which shares nothing with the generator.</summary>
    public sealed class IdlReader
    {
        public IdlReader()
        {
            var folder = Environment.GetEnvironmentVariable("MORQUIL_IDL");
            foreach (var file in new[] { "MorquilAPI.idl", "MorquilDelivery.idl" })
            {
                var text = File.ReadAllText(Path.Combine(folder, file));
                Read(Regex.Replace(text, @"/\*.*?\*/", "", RegexOptions.Singleline));
            }
        }

        /// <summary>Each with its constants, in order.</summary>
        public Dictionary<string, List<KeyValuePair<string, long>>> Enumerations { get; } =
            new Dictionary<string, List<KeyValuePair<string, long>>>();

        /// <summary>Each with its identifier and its methods, in order.</summary>
        public Dictionary<string, Interface> Interfaces { get; } = new Dictionary<string, Interface>();

        private void Read(string text)
        {
            const RegexOptions single = RegexOptions.Singleline;
            foreach (Match found in Regex.Matches(text, @"enum (\w+)\s*\{(.*?)\}", single))
            {
                var constants = Regex.Matches(found.Groups[2].Value, @"(\w+)\s*=\s*(\w+)").Cast<Match>();
                Enumerations[found.Groups[1].Value] = constants.Select(each =>
                    new KeyValuePair<string, long>(each.Groups[1].Value, Number(each.Groups[2].Value))).ToList();
            }
            const string definition = @"uuid\(([^)]*)\)[^]]*\]\s*interface (\w+) : (\w+)\s*\{(.*?)\};";
            foreach (Match found in Regex.Matches(text, definition, single))
            {
                Interfaces[found.Groups[2].Value] = new Interface
                {
                    Id = new Guid(found.Groups[1].Value),
                    Base = found.Groups[3].Value,
                    Methods = Regex.Matches(found.Groups[4].Value, @"(\w+ \w+)\((.*?)\);", single).Cast<Match>()
                        .Select(each => $"{each.Groups[1].Value}({Spaced(each.Groups[2].Value)})").ToList(),
                };
            }
        }

        private static long Number(string text) => text.StartsWith("0x") ? Convert.ToInt64(text, 16) : long.Parse(text);

        private static string Spaced(string text) => Regex.Replace(text.Trim(), @"\s+", " ");

        public sealed class Interface
        {
            public Guid Id;
            public string Base;

            /// <summary>As "HRESULT SetGain([in] int gain)".</summary>
            public List<string> Methods;
        }
    }
}
