using System;

namespace Morquil.Interop
{
    /// <summary>Pauses between attempts double up to the longest; each is varied by up to a quarter, so that the hosts
    /// of a device that was switched off do not all reconnect at once.</summary>
    internal sealed class Backoff
    {
        private readonly TimeSpan first;
        private readonly TimeSpan longest;
        private readonly Random random = new Random(Guid.NewGuid().GetHashCode());
        private TimeSpan next;

        internal Backoff(TimeSpan first, TimeSpan longest)
        {
            this.first = next = first;
            this.longest = longest;
        }

        /// <summary>A connection was established.</summary>
        internal void Reset() => next = first;

        internal TimeSpan Pause()
        {
            var pause = TimeSpan.FromTicks((long)(next.Ticks * (0.75 + 0.5 * random.NextDouble())));
            next = TimeSpan.FromTicks(Math.Min(2 * next.Ticks, longest.Ticks));
            return pause;
        }
    }
}
