using System;
using System.Linq;

namespace Morquil.Interop
{
    /// <summary>Values that the interfaces hold as numbers, and people write otherwise.</summary>
    internal static class Formats
    {
        private static readonly int[] Shifts = { 24, 16, 8, 0 };
        private static readonly int[] TimecodeLimits = { 24, 60, 60, 60 };

        /// <summary>Two decimal digits are in each byte.</summary>
        internal static string Timecode(uint packed) =>
            string.Join(":", Shifts.Select(shift => (packed >> shift & 0xFF).ToString("x2")));

        /// <summary>The opposite; any of : ; . separates. Null if it is none.</summary>
        internal static uint? TimecodeOf(string text)
        {
            var parts = (text ?? "").Split(':', ';', '.');
            if (parts.Length != TimecodeLimits.Length || !parts.Zip(TimecodeLimits, IsTimecodePart).All(good => good))
            {
                return null;
            }
            return parts.Aggregate(0u, (packed, part) => packed << 8 | Convert.ToUInt32(part, 16));
        }

        internal static uint ParseTimecode(string text) => TimecodeOf(text).Value;

        /// <summary>The first number is in the top byte.</summary>
        internal static string Address(uint packed) => string.Join(".", Shifts.Select(shift => packed >> shift & 0xFF));

        /// <summary>The number of picture lines, with which the ranges of lines are requested.</summary>
        internal static uint FrameHeight(VideoMode mode)
        {
            switch (mode)
            {
                case VideoMode.NTSC:
                case VideoMode.NTSCp:
                    return 486;
                case VideoMode.PAL:
                    return 576;
            }
            var word = mode.ToWord();
            return word.StartsWith("720", StringComparison.Ordinal) ? 720u
                : word.StartsWith("2160", StringComparison.Ordinal) ? 2160u : 1080u;
        }

        private static bool IsTimecodePart(string part, int limit) =>
            part.Length == 2 && part.All(digit => digit >= '0' && digit <= '9') && int.Parse(part) < limit;
    }
}
