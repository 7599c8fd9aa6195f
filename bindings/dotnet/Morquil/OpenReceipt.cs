using System;
using System.Threading;
using System.Threading.Tasks;

namespace Morquil.Interop
{
    /// <summary>A receipt for what a thread sets; cancelled unless it ends.</summary>
    internal sealed class OpenReceipt : IDisposable
    {
        private readonly Connection connection;
        private readonly ulong number;
        private readonly Receipt receipt;

        internal OpenReceipt(Connection connection, ulong number)
        {
            this.connection = connection;
            this.number = number;
            receipt = connection.Receipts.Find(number);
        }

        private ComReference Delivery => connection.Delivery;

        private string Address => connection.Link.Address;

        internal OpenReceipt UntilAnswered()
        {
            receipt.IsAnswerEnough = true;
            return this;
        }

        /// <summary>Runs what queues changes. What it throws is thrown here; what it has set before is still
        /// sent.</summary>
        internal void Queue(Action change)
        {
            change();
            var mark = Delivery.Function<CallUInt64>(Slots.Delivery.MarkReceipt);
            Results.Check("MarkReceipt", mark(Delivery, number));
        }

        internal Outcome Wait(TimeSpan timeout) =>
            receipt.Ended.Wait(timeout) ? Judge(receipt.Ended.Result) : throw TimedOut(timeout);

        internal async Task<Outcome> WaitAsync(TimeSpan timeout, CancellationToken cancellation)
        {
            using (Deadline.After(timeout, () => receipt.GiveUp(TimedOut(timeout))))
            using (cancellation.Register(receipt.Cancel))
            {
                return Judge(await receipt.Ended.ConfigureAwait(false));
            }
        }

        public void Dispose()
        {
            if (!receipt.IsOver)
            {
                Delivery.Function<CallUInt64>(Slots.Delivery.CancelReceipt)(Delivery, number);
            }
            connection.Receipts.Forget(number);
        }

        /// <summary>The outcome of a receipt that has ended, or an exception.</summary>
        private Outcome Judge(Outcome outcome)
        {
            if (receipt.IsLost)
            {
                throw connection.Link.Loss(outcome);
            }
            var total = outcome.Acknowledged + outcome.Refused;
            return outcome.Refused == 0 ? outcome : throw new RefusedException(
                $"{Address}: the device has refused {outcome.Refused} of {total} messages", outcome);
        }

        private TimedOutException TimedOut(TimeSpan timeout)
        {
            var state = receipt.IsAnswered ? "accepted the change, but not reported it" : "not answered";
            return new TimedOutException($"{Address}: the device has {state} within {timeout.TotalSeconds} s");
        }
    }
}
