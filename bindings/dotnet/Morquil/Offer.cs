using System;
using System.Collections.Generic;
using System.Linq;
using Morquil.Features;
using Morquil.Interop;

namespace Morquil
{
    /// <summary>What a device accepts now for a property: a range, or words.</summary>
    public sealed class Offer
    {
        private Offer(IComparable min, IComparable max, IReadOnlyList<Enum> values)
        {
            Min = min;
            Max = max;
            Values = values;
        }

        /// <summary>The smallest number; null if words are offered.</summary>
        public IComparable Min { get; }

        /// <summary>The largest number; null if words are offered.</summary>
        public IComparable Max { get; }

        /// <summary>The values of the words; empty if a range is offered.</summary>
        public IReadOnlyList<Enum> Values { get; }

        /// <summary>Whether it is a range.</summary>
        public bool IsRange => Min != null;

        /// <summary>Whether a value of the property is accepted.</summary>
        public bool Contains(object value) =>
            IsRange ? Min.CompareTo(value) <= 0 && Max.CompareTo(value) >= 0 : Values.Contains(value);

        /// <summary>"-60 to 60" or "1080i50, 1080p50".</summary>
        public override string ToString() =>
            IsRange
                ? $"{Morquil.Words.ToText(Min)} to {Morquil.Words.ToText(Max)}"
                : string.Join(", ", Values.Select(Morquil.Words.ToWord));

        internal static Offer Range<T>(Range<T> range) where T : IComparable =>
            new Offer(range.Min, range.Max, new Enum[0]);

        internal static Offer Range(Range<int> range, int above) =>
            new Offer(range.Min, range.Max + above, new Enum[0]);

        /// <summary>The words for which a condition holds. None at all means that the device has not reported
        /// them.</summary>
        internal static Offer Words<T>(Func<T, bool> isOffered) where T : struct
        {
            var values = Morquil.Words.All<T>().Where(isOffered).Select(value => (Enum)(object)value).ToArray();
            return values.Length > 0 ? new Offer(null, null, values) : null;
        }

        internal static Offer Words<T>(Range<T> range) where T : struct, IComparable => Words<T>(range.Contains);

        /// <summary>The output modes to which the device converts an input mode.</summary>
        internal static Offer VideoModes(DeviceCalls device, VideoMode input) =>
            Words<VideoMode>(output => Morquil.Words.All<AspectRatio>().Any(
                ratio => device.IsConversionSupported(input, output, ratio)));

        /// <summary>The ratios with which the device converts.</summary>
        internal static Offer AspectRatios(DeviceCalls device, VideoMode input, VideoMode output) =>
            Words<AspectRatio>(ratio => device.IsConversionSupported(input, output, ratio));

        /// <summary>Throws unless a value may be set.</summary>
        internal void Check(Property property, object value)
        {
            if (Contains(value))
            {
                return;
            }
            var text = Morquil.Words.ToText(value);
            if (IsRange)
            {
                var nearestEnd = Min.CompareTo(value) > 0 ? Min : Max;
                throw new InvalidValueException($"{property}: {text} is outside {this}", nearestEnd);
            }
            var nearest = Morquil.Words.ListOf(property.ValueType).NearestOf(text, Values);
            var shown = string.Join(", ", nearest.Select(Morquil.Words.ToText));
            throw new NotOfferedException($"{property}: {text} is not offered now; nearest: {shown}", nearest);
        }
    }
}
