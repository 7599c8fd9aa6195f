using System;
using System.Collections.Generic;
using System.Linq;

namespace Morquil.Interop
{
    internal struct Word
    {
        internal Word(string text, Enum value)
        {
            Text = text;
            Value = value;
        }

        internal string Text { get; }

        internal Enum Value { get; }
    }

    /// <summary>The words of one enumeration.</summary>
    internal sealed class WordList
    {
        private readonly Dictionary<string, Enum> values =
            new Dictionary<string, Enum>(StringComparer.OrdinalIgnoreCase);

        private readonly Dictionary<Enum, string> texts = new Dictionary<Enum, string>();

        internal WordList(Type kind, Word[] words)
        {
            Kind = kind;
            Values = words.Select(word => word.Value).ToArray();
            foreach (var word in words)
            {
                values[word.Text] = word.Value;
                texts[word.Value] = word.Text;
            }
        }

        internal Type Kind { get; }

        internal IReadOnlyList<Enum> Values { get; }

        internal string WordOf(Enum value) => texts.TryGetValue(value, out var text) ? text : value.ToString("D");

        internal bool TryFind(string text, out Enum value) => values.TryGetValue(text ?? "", out value);

        /// <summary>The three most similar, or none if nothing is similar.</summary>
        internal object[] Nearest(string text) =>
            Suggestion.Nearest(text, Values.Select(WordOf)) == "" ? new object[0] : NearestOf(text, Values);

        internal object[] NearestOf(string text, IEnumerable<Enum> among) =>
            Suggestion.NearestFirst(text, among.Select(WordOf)).Take(3).Select(word => (object)values[word]).ToArray();
    }
}
