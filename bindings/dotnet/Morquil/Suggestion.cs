using System;
using System.Collections.Generic;
using System.Linq;

namespace Morquil.Interop
{
    /// <summary>The most similar of several texts.</summary>
    internal static class Suggestion
    {
        /// <summary>How many letters must be inserted, removed or replaced to turn one text into the other, ignoring
        /// case.</summary>
        internal static int EditDistance(string left, string right)
        {
            left = left.ToLowerInvariant();
            right = right.ToLowerInvariant();
            var row = Enumerable.Range(0, right.Length + 1).ToArray();
            foreach (var letter in left)
            {
                var diagonal = row[0]++;
                for (var at = 0; at < right.Length; ++at)
                {
                    var replaced = diagonal + (letter == right[at] ? 0 : 1);
                    diagonal = row[at + 1];
                    row[at + 1] = Math.Min(replaced, Math.Min(diagonal, row[at]) + 1);
                }
            }
            return row[right.Length];
        }

        /// <summary>The most similar candidate, or an empty text if none is similar.</summary>
        internal static string Nearest(string text, IEnumerable<string> candidates) =>
            candidates.Where(each => 2 * EditDistance(text, each) <= Math.Max(text.Length, each.Length))
                .OrderBy(each => EditDistance(text, each)).FirstOrDefault() ?? "";

        /// <summary>The most similar first; of equally similar ones, those that begin like the text.</summary>
        internal static IEnumerable<string> NearestFirst(string text, IEnumerable<string> candidates) =>
            candidates.OrderBy(each => EditDistance(text, each)).ThenByDescending(each => SharedBeginning(text, each));

        private static int SharedBeginning(string left, string right) =>
            left.ToLowerInvariant().Zip(right.ToLowerInvariant(), (a, b) => a == b).TakeWhile(same => same).Count();
    }
}
