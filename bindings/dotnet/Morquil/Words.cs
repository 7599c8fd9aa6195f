using System;
using System.Collections.Generic;
using System.Globalization;
using System.Linq;
using Morquil.Interop;

namespace Morquil
{
    /// <summary>The words that devices and people use for values.</summary>
    public static class Words
    {
        private static readonly Dictionary<Type, WordList> Lists = WordTable.All.ToDictionary(list => list.Kind);

        /// <summary>The word for a value: "1080i50" for VideoMode.Mode1080i50. A value without one is its
        /// number.</summary>
        public static string ToWord(this Enum value) =>
            Lists.TryGetValue(value.GetType(), out var list) ? list.WordOf(value) : value.ToString();

        /// <summary>The value for a word, ignoring case. InvalidValueException if there is none.</summary>
        public static T Parse<T>(string word) where T : struct
        {
            var list = ListOf(typeof(T));
            return list.TryFind(word, out var value)
                ? (T)(object)value
                : throw new InvalidValueException($"'{word}' is not one of {typeof(T).Name}", list.Nearest(word ?? ""));
        }

        /// <summary>All values that have words, in the order of the device's list.</summary>
        public static IReadOnlyList<T> All<T>() where T : struct =>
            ListOf(typeof(T)).Values.Select(value => (T)(object)value).ToArray();

        /// <summary>Any value of a property as people read it: words, "true" and "false", numbers with a
        /// point.</summary>
        public static string ToText(object value)
        {
            if (value is Enum word)
            {
                return word.ToWord();
            }
            var text = Convert.ToString(value, CultureInfo.InvariantCulture);
            return value is bool ? text.ToLowerInvariant() : text;
        }

        internal static WordList ListOf(Type kind) =>
            Lists.TryGetValue(kind, out var list) ? list : throw new ArgumentException($"{kind.Name} has no words");
    }
}
