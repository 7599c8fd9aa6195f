using System;
using System.Collections.Generic;
using System.Threading;

namespace Morquil.Interop
{
    /// <summary>One connection to one device, until it is disposed of.</summary>
    internal sealed class Connection : IDisposable
    {
        private readonly ComReference discovery = Library.Current.Discovery;
        private readonly ComReference observer;
        private readonly ComReference receiptObserver;
        private readonly List<IDisposable> parts = new List<IDisposable>();
        private int isClosed;

        /// <summary>Begins to connect.</summary>
        internal Connection(string address)
        {
            Link = new Link(address);
            using (var text = new LibraryText(address))
            {
                observer = HostObject.Of<IMorquilConnectionObserver>(
                    new ConnectionObserver(Link), Slots.ConnectionObserver.Id);
                receiptObserver = HostObject.Of<IMorquilReceiptObserver>(Receipts, Slots.ReceiptObserver.Id);
                var connect = discovery.Function<CallTextOutReferenceReference>(Slots.Discovery.ConnectAsync);
                Results.Check("ConnectAsync", connect(discovery, text, out var device, observer));
                Device = new ComReference(device);
            }
            Delivery = Device.Query(Slots.Delivery.Id);
            OpenObjects.Add(this);
        }

        internal Link Link { get; }

        internal Receipts Receipts { get; } = new Receipts();

        internal ComReference Device { get; }

        internal ComReference Delivery { get; }

        internal TimeSpan Silence
        {
            get
            {
                var get = Delivery.Function<CallOutUInt32>(Slots.Delivery.GetSilence);
                var result = get(Delivery, out var milliseconds);
                if (result == Results.Fail)
                {
                    throw Link.Loss();
                }
                Results.Check("GetSilence", result);
                return TimeSpan.FromMilliseconds(milliseconds);
            }
        }

        /// <summary>Has something disposed of when the connection is closed, or at once if it is.</summary>
        internal void Add(IDisposable part)
        {
            lock (parts)
            {
                if (isClosed == 0)
                {
                    parts.Add(part);
                    return;
                }
            }
            part.Dispose();
        }

        /// <summary>Collects from here on the changes of this thread.</summary>
        internal OpenReceipt OpenReceipt()
        {
            if (Link.HasEnded)
            {
                throw Link.Loss();
            }
            var open = Delivery.Function<CallReferenceInt32OutUInt64>(Slots.Delivery.OpenReceipt);
            var result = open(Delivery, receiptObserver, (int)ReceiptScope.ThisThread, out var number);
            if (result == Results.Fail)
            {
                throw Link.Loss();
            }
            Results.Check("OpenReceipt", result);
            return new OpenReceipt(this, number);
        }

        /// <summary>Ends the connection. Outside a callback no observer is called any more when this returns.</summary>
        public void Dispose()
        {
            if (Interlocked.Exchange(ref isClosed, 1) != 0)
            {
                return;
            }
            Link.IsClosed = !Link.HasEnded;
            discovery.Function<CallReference>(Slots.Discovery.Disconnect)(discovery, Device);
            Device.Function<CallReference>(Slots.Device.RemoveConnectionObserver)(Device, observer);
            Link.End(ConnectFailure.NoResponse);
            lock (parts)
            {
                parts.ForEach(part => part.Dispose());
            }
            foreach (var reference in new[] { observer, receiptObserver, Delivery, Device })
            {
                reference.Dispose();
            }
            OpenObjects.Remove(this);
        }
    }
}
