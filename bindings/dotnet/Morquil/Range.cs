using System;
using System.Collections.Generic;

namespace Morquil
{
    /// <summary>From Min to Max; both are included.</summary>
    public struct Range<T> : IEquatable<Range<T>> where T : IComparable
    {
        /// <summary>A range with these ends.</summary>
        public Range(T min, T max)
        {
            Min = min;
            Max = max;
        }

        /// <summary>The smallest value.</summary>
        public T Min { get; }

        /// <summary>The largest value.</summary>
        public T Max { get; }

        /// <summary>Whether a value is in it.</summary>
        public bool Contains(T value) => Min.CompareTo(value) <= 0 && value.CompareTo(Max) <= 0;

        /// <summary>Whether both ends are equal.</summary>
        public bool Equals(Range<T> other) =>
            EqualityComparer<T>.Default.Equals(Min, other.Min) && EqualityComparer<T>.Default.Equals(Max, other.Max);

        /// <summary>Whether it is a range with the same ends.</summary>
        public override bool Equals(object other) => other is Range<T> range && Equals(range);

        /// <summary>Made from both ends.</summary>
        public override int GetHashCode() => 31 * Min.GetHashCode() + Max.GetHashCode();

        /// <summary>"-60 to 60".</summary>
        public override string ToString() => $"{Words.ToText(Min)} to {Words.ToText(Max)}";
    }
}
