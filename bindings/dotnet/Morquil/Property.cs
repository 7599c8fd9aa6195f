using System;
using System.Collections.Generic;
using System.Linq;
using System.Text.RegularExpressions;
using Morquil.Interop;

namespace Morquil
{
    /// <summary>What kind of value a property has.</summary>
    public enum PropertyKind
    {
        /// <summary>A whole number: int or uint.</summary>
        Number,

        /// <summary>A uint whose bits have meanings of their own.</summary>
        Bits,

        /// <summary>A double.</summary>
        Decimal,

        /// <summary>A bool.</summary>
        YesNo,

        /// <summary>A value of an enumeration, or its word.</summary>
        Word,

        /// <summary>A string.</summary>
        Text,

        /// <summary>A string such as "10:00:00:00".</summary>
        Timecode,

        /// <summary>A string such as "192.168.1.10".</summary>
        Address,

        /// <summary>A command without a value.</summary>
        None,
    }

    /// <summary>What can be done with a property.</summary>
    public enum PropertyAccess
    {
        /// <summary>It can only be read.</summary>
        Read,

        /// <summary>It can be read and set.</summary>
        ReadWrite,

        /// <summary>It can only be set, and is carried out once.</summary>
        Command,
    }

    /// <summary>A property of a device by name.</summary>
    public sealed class Property
    {
        internal Property(string name, PropertyKind kind, PropertyAccess access, PropertySet set, string summary)
        {
            Name = name;
            Kind = kind;
            Access = access;
            Set = set;
            Summary = summary;
        }

        /// <summary>All properties.</summary>
        public static IReadOnlyList<Property> All => PropertyRows.All;

        /// <summary>"proc-amp.gain".</summary>
        public string Name { get; }

        /// <summary>What it is.</summary>
        public string Summary { get; }

        /// <summary>The unit of its values, or empty.</summary>
        public string Unit { get; internal set; } = "";

        /// <summary>What kind of value it has.</summary>
        public PropertyKind Kind { get; }

        /// <summary>The type of its values; null for a command without a value.</summary>
        public Type ValueType { get; internal set; }

        /// <summary>Whether it can be read or set.</summary>
        public PropertyAccess Access { get; }

        /// <summary>Whether it has a value.</summary>
        public bool IsReadable => Getter != null;

        /// <summary>Whether it can be set.</summary>
        public bool IsWritable => Setter != null;

        internal PropertySet Set { get; }

        internal long Smallest { get; set; }

        internal long Largest { get; set; }

        internal int MostBytes { get; set; }

        /// <summary>The preset that it belongs to, counted from 1; 0 for none.</summary>
        internal int Preset { get; set; }

        internal Func<MorquilDevice, object> Getter { get; set; }

        internal Action<MorquilDevice, object> Setter { get; set; }

        internal Func<MorquilDevice, Offer> OfferGetter { get; set; }

        /// <summary>The property of this name, ignoring case. NoSuchPropertyException if there is none.</summary>
        public static Property Find(string name)
        {
            if (PropertyNames.Rows.TryGetValue(name, out var found))
            {
                return found;
            }
            var nearest = Suggestion.Nearest(name, PropertyNames.Rows.Keys);
            var hint = nearest == "" ? "" : $"; nearest: {nearest}";
            throw new NoSuchPropertyException($"there is no property '{name}'{hint}", nearest);
        }

        /// <summary>Those that a pattern means: a name, its part before a point, or a name with * and ? in
        /// it.</summary>
        public static IReadOnlyList<Property> Matching(string pattern)
        {
            var expression = Regex.Escape(pattern).Replace(@"\*", ".*").Replace(@"\?", ".");
            var wanted = new Regex($@"^{expression}(\..*)?$", RegexOptions.IgnoreCase | RegexOptions.CultureInvariant);
            var found = All.Where(row => wanted.IsMatch(row.Name)).ToArray();
            return found.Length > 0 ? found : new[] { Find(pattern) };
        }

        /// <summary>Its name.</summary>
        public override string ToString() => Name;

        // Beside the table, which must be complete before.
        private static class PropertyNames
        {
            internal static readonly Dictionary<string, Property> Rows =
                All.ToDictionary(row => row.Name, StringComparer.OrdinalIgnoreCase);
        }
    }
}
