using System;
using System.Collections.Generic;
using System.Linq;
using System.Text;

namespace Morquil.Interop
{
    /// <summary>What a host sets, turned into what a setter takes. InvalidValueException unless it is a value of the
    /// property.</summary>
    internal static class Values
    {
        private static readonly Dictionary<PropertyKind, Func<Property, object, object>> Conversions =
            new Dictionary<PropertyKind, Func<Property, object, object>>
            {
                { PropertyKind.Number, Number },
                { PropertyKind.Bits, Number },
                { PropertyKind.Decimal, Decimal },
                { PropertyKind.YesNo, YesNo },
                { PropertyKind.Word, WordOf },
                { PropertyKind.Text, Text },
                { PropertyKind.Timecode, Timecode },
            };

        internal static object Convert(Property property, object value)
        {
            if (property.Kind == PropertyKind.None)
            {
                return value == null ? (object)null : throw Invalid(property, "it is a command without a value");
            }
            return value != null
                ? Conversions[property.Kind](property, value) : throw Invalid(property, "it needs a value");
        }

        private static object Number(Property property, object value)
        {
            if (!IsWhole(value))
            {
                throw Invalid(property, $"{Words.ToText(value)} is not a whole number");
            }
            var number = System.Convert.ToDecimal(value);
            if (number < property.Smallest || number > property.Largest)
            {
                var nearest = number < property.Smallest ? property.Smallest : property.Largest;
                throw Invalid(property, $"{number} is outside {property.Smallest} to {property.Largest}",
                              System.Convert.ChangeType(nearest, property.ValueType));
            }
            return System.Convert.ChangeType(number, property.ValueType);
        }

        private static bool IsWhole(object value) =>
            value is int || value is uint || value is long || value is ulong || value is short || value is ushort ||
            value is sbyte || value is byte;

        private static object Decimal(Property property, object value)
        {
            if (!IsWhole(value) && !(value is double) && !(value is float) && !(value is decimal))
            {
                throw Invalid(property, $"{Words.ToText(value)} is not a number such as 1.25");
            }
            var number = System.Convert.ToDouble(value);
            return !double.IsNaN(number) && !double.IsInfinity(number)
                ? number : throw Invalid(property, $"{Words.ToText(value)} is not a number such as 1.25");
        }

        private static object YesNo(Property property, object value) =>
            value is bool ? value : throw Invalid(property, $"{Words.ToText(value)} is neither true nor false");

        private static object WordOf(Property property, object value)
        {
            var list = Words.ListOf(property.ValueType);
            if (value.GetType() == property.ValueType && list.Values.Contains((Enum)value))
            {
                return value;
            }
            var given = Words.ToText(value);
            if (value is string && list.TryFind(given, out var found))
            {
                return found;
            }
            var nearest = list.Nearest(given);
            var hint = nearest.Length > 0 ? $"nearest: {Words.ToText(nearest[0])}" : $"there are {Several(list)}";
            throw new InvalidValueException($"{property}: '{given}' is not a word of it; {hint}", nearest);
        }

        private static string Several(WordList list) =>
            string.Join(", ", list.Values.Take(8).Select(list.WordOf)) + (list.Values.Count > 8 ? " and others" : "");

        private static object Text(Property property, object value)
        {
            var text = value as string ?? throw Invalid(property, $"{Words.ToText(value)} is not a text");
            var problem = LibraryText.ProblemOf(text);
            if (problem != null)
            {
                throw Invalid(property, problem);
            }
            var length = Encoding.UTF8.GetByteCount(text);
            var most = property.MostBytes;
            return most == 0 || length <= most
                ? text : throw Invalid(property, $"the text has {length} bytes, and at most {most} are kept");
        }

        private static object Timecode(Property property, object value) =>
            Formats.TimecodeOf(value as string) != null
                ? value : throw Invalid(property, $"'{Words.ToText(value)}' is not a timecode such as 01:02:03:04");

        private static InvalidValueException Invalid(Property property, string problem, params object[] nearest) =>
            new InvalidValueException($"{property}: {problem}", nearest);
    }
}
