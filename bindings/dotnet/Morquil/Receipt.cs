using System;
using System.Threading.Tasks;

namespace Morquil.Interop
{
    /// <summary>What has been reported of the changes of one call.</summary>
    internal sealed class Receipt
    {
        private readonly TaskCompletionSource<Outcome> ended =
            new TaskCompletionSource<Outcome>(TaskCreationOptions.RunContinuationsAsynchronously);

        private Outcome outcome;

        /// <summary>Whether it ends when the device has answered, and does not wait for its reports.</summary>
        internal bool IsAnswerEnough { get; set; }

        internal bool IsAnswered { get; private set; }

        internal bool IsLost { get; private set; }

        /// <summary>Whether the library will report nothing more.</summary>
        internal bool IsOver { get; private set; }

        /// <summary>The outcome, or cancelled when no caller waits for it any more.</summary>
        internal Task<Outcome> Ended => ended.Task;

        internal void Answer(Outcome answered)
        {
            outcome = answered;
            IsAnswered = true;
            if (IsAnswerEnough)
            {
                ended.TrySetResult(outcome);
            }
        }

        internal void Settle(uint confirmed, uint adjusted)
        {
            outcome.Confirmed = confirmed;
            outcome.Adjusted = adjusted;
            IsOver = true;
            ended.TrySetResult(outcome);
        }

        internal void Lose(Outcome lost)
        {
            lost.Kept = outcome.Kept;
            IsLost = true;
            IsOver = true;
            ended.TrySetResult(lost);
        }

        internal void GiveUp(Exception reason) => ended.TrySetException(reason);

        internal void Cancel() => ended.TrySetCanceled();
    }
}
