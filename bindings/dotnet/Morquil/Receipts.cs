#if NET8_0_OR_GREATER
using System.Runtime.InteropServices.Marshalling;
#endif
using System.Collections.Concurrent;

namespace Morquil.Interop
{
    /// <summary>Collects what the library reports about all receipts of a connection.</summary>
#if NET8_0_OR_GREATER
    [GeneratedComClass]
#endif
    internal sealed partial class Receipts : IMorquilReceiptObserver
    {
        private readonly ConcurrentDictionary<ulong, Receipt> receipts = new ConcurrentDictionary<ulong, Receipt>();

        /// <summary>A loss may be reported before the number is known here, so either side may be the first to
        /// ask.</summary>
        internal Receipt Find(ulong number) => receipts.GetOrAdd(number, _ => new Receipt());

        internal void Forget(ulong number) => receipts.TryRemove(number, out _);

        public int Answered(ulong receipt, uint acknowledged, uint refused, uint kept) => Callback.Run(() =>
            Find(receipt).Answer(new Outcome { Acknowledged = acknowledged, Refused = refused, Kept = kept }));

        public int Settled(ulong receipt, uint confirmed, uint adjusted) => Callback.Run(() =>
            Find(receipt).Settle(confirmed, adjusted));

        public int Lost(ulong receipt, uint acknowledged, uint refused, uint unanswered, uint unsent) =>
            Callback.Run(() => Find(receipt).Lose(new Outcome
            {
                Acknowledged = acknowledged, Refused = refused, Unanswered = unanswered, Unsent = unsent,
            }));
    }
}
