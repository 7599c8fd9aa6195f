using System;
using System.Collections.Generic;
using System.Linq;
using Morquil.Interop;

namespace Morquil
{
    public sealed partial class MorquilDevice
    {
        /// <summary>The value of a property, as the device has last reported it. It never waits. NotKnownException if
        /// the device has not reported it, LostException once the connection has ended.</summary>
        public object Get(string name)
        {
            var property = Property.Find(name);
            return property.IsReadable
                ? property.Getter(this) : throw new NotKnownException($"{property} is a command, and has no value");
        }

        /// <summary>As Get, for a property whose type is known: Property.ValueType says which it is.</summary>
        public T Get<T>(string name) => (T)Get(name);

        /// <summary>The values of all properties that a pattern means, as far as they are known.</summary>
        public IReadOnlyDictionary<string, object> Values(string pattern = "*") =>
            Property.Matching(pattern).Where(row => row.IsReadable)
                .Select(row => new KeyValuePair<string, object>(row.Name, ValueOf(row)))
                .Where(pair => pair.Value != null).ToDictionary(pair => pair.Key, pair => pair.Value);

        /// <summary>What the device accepts now for a property; null if it has not reported it.</summary>
        public Offer Offered(string name) => OfferOf(Property.Find(name));

        /// <summary>Throws what Set would throw without sending anything: NoSuchPropertyException, ReadOnlyException,
        /// InvalidValueException, NotOfferedException.</summary>
        public void Check(string name, object value = null) => Prepare(name, value);

        /// <summary>Null if it is not known.</summary>
        internal object ValueOf(Property row)
        {
            try
            {
                return Has(row) ? row.Getter(this) : null;
            }
            catch (NotKnownException)
            {
                return null;
            }
        }

        private Offer OfferOf(Property row)
        {
            try
            {
                return row.OfferGetter?.Invoke(this);
            }
            catch (NotKnownException)
            {
                return null;
            }
        }

        /// <summary>Whether the device has a property, as far as it has reported that: it may have fewer presets than
        /// there are names.</summary>
        private bool Has(Property row)
        {
            try
            {
                return row.Preset == 0 || Preset.GetPresetRange().Contains(row.Preset);
            }
            catch (NotKnownException)
            {
                return true;
            }
        }

        /// <summary>Checks a change. Returns what queues it.</summary>
        private Action Prepare(string name, object value)
        {
            var row = Property.Find(name);
            if (!row.IsWritable)
            {
                throw new ReadOnlyException($"{row} can only be read");
            }
            if (!IsConnected)
            {
                throw Loss();
            }
            if (!Has(row))
            {
                throw new NotOfferedException($"{row}: this device does not have it");
            }
            var converted = Interop.Values.Convert(row, value);
            OfferOf(row)?.Check(row, converted);
            return () => row.Setter(this, converted);
        }

        private Action PrepareAll(IEnumerable<KeyValuePair<string, object>> values)
        {
            var changes = values.Select(pair => Prepare(pair.Key, pair.Value)).ToList();
            return () => changes.ForEach(change => change());
        }
    }
}
