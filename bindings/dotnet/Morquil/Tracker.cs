using System;
using System.Collections.Generic;
using System.Linq;

namespace Morquil.Interop
{
    /// <summary>Compares what the device reports with what was known before, on the connection's thread: the mirror
    /// does not change meanwhile.</summary>
    internal sealed class Tracker : IDisposable
    {
        private static readonly ILookup<PropertySet, Property> Rows =
            Property.All.Where(row => row.IsReadable).ToLookup(row => row.Set);

        private readonly WeakReference<MorquilDevice> device;
        private readonly ComReference delivery;
        private readonly ComReference observer;
        private readonly Dictionary<Property, object> values;
        private readonly object gate = new object();

        internal Tracker(MorquilDevice device, ComReference delivery)
        {
            this.device = new WeakReference<MorquilDevice>(device);
            this.delivery = delivery;
            observer = HostObject.Of<IMorquilReportObserver>(new ReportObserver(this), Slots.ReportObserver.Id);
            // What is reported meanwhile waits for the lock.
            lock (gate)
            {
                var add = delivery.Function<CallReference>(Slots.Delivery.AddReportObserver);
                Results.Check("AddReportObserver", add(delivery, observer));
                values = Rows.SelectMany(set => set).ToDictionary(row => row, row => Read(device, row));
            }
        }

        /// <summary>Notifies of what is different in a set.</summary>
        internal void Report(PropertySet set, bool isEcho)
        {
            if (!device.TryGetTarget(out var target))
            {
                return;
            }
            List<ChangedEventArgs> changes;
            lock (gate)
            {
                changes = Differences(target, set, isEcho).ToList();
            }
            changes.ForEach(target.RaiseChanged);
        }

        /// <summary>The connection has ended.</summary>
        public void Dispose()
        {
            delivery.Function<CallReference>(Slots.Delivery.RemoveReportObserver)(delivery, observer);
            observer.Dispose();
        }

        private IEnumerable<ChangedEventArgs> Differences(MorquilDevice target, PropertySet set, bool isEcho)
        {
            foreach (var row in Rows[set])
            {
                var old = values[row];
                var now = Read(target, row);
                if (!Equals(old, now))
                {
                    values[row] = now;
                    yield return new ChangedEventArgs(row.Name, old, now, isEcho);
                }
            }
        }

        private static object Read(MorquilDevice device, Property row)
        {
            try
            {
                return device.ValueOf(row);
            }
            catch (LostException)
            {
                return null;
            }
            catch (ObjectDisposedException)
            {
                return null;
            }
        }
    }
}
