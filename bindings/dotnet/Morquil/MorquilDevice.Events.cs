using System;
using Morquil.Interop;

namespace Morquil
{
    public sealed partial class MorquilDevice
    {
        private EventHandler<ChangedEventArgs> changed;
        private bool isTracking;

        /// <summary>A property has changed: at the device, by another host, or by this one.</summary>
        public event EventHandler<ChangedEventArgs> Changed
        {
            add
            {
                lock (gate)
                {
                    changed += value;
                    Track();
                }
            }

            remove
            {
                lock (gate)
                {
                    changed -= value;
                }
            }
        }

        /// <summary>The connection has ended without being closed.</summary>
        public event EventHandler<LostEventArgs> Lost;

        internal void RaiseChanged(ChangedEventArgs change) => raiser.Raise(() => changed?.Invoke(this, change));

        /// <summary>What waits for the end of a connection does not keep its device.</summary>
        private static void RaiseLost(WeakReference<MorquilDevice> self)
        {
            if (self.TryGetTarget(out var device) && !device.connection.Link.IsClosed)
            {
                device.raiser.Raise(() => device.Lost?.Invoke(device, new LostEventArgs(device.Loss())));
            }
        }

        /// <summary>The first handler needs the values to compare with.</summary>
        private void Track()
        {
            if (!isTracking)
            {
                if (!IsConnected)
                {
                    throw Loss();
                }
                connection.Add(new Tracker(this, connection.Delivery));
                isTracking = true;
            }
        }
    }
}
