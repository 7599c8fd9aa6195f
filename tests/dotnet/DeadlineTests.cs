using System;
using System.Collections.Concurrent;
using System.Threading;
using Morquil.Interop;

namespace Morquil.Tests
{
    /// <summary>The ends of waits.</summary>
    public static class DeadlineTests
    {
        [Test]
        public static void DeadlinesExpireInTheirOrder()
        {
            var expired = new BlockingCollection<int>();
            foreach (var milliseconds in new[] { 200, 1, 100 })
            {
                Deadline.After(TimeSpan.FromMilliseconds(milliseconds), () => expired.Add(milliseconds));
            }
            foreach (var milliseconds in new[] { 1, 100, 200 })
            {
                Expect.True(expired.TryTake(out var first, Expect.Soon), "no end");
                Expect.Equal(milliseconds, first);
            }
        }

        [Test]
        public static void ADisposedDeadlineDoesNotExpire()
        {
            var hasExpired = false;
            Deadline.After(TimeSpan.FromMilliseconds(20), () => hasExpired = true).Dispose();
            var later = new ManualResetEventSlim();
            Deadline.After(TimeSpan.FromMilliseconds(40), later.Set);
            Expect.True(later.Wait(Expect.Soon) && !hasExpired, "expired");
        }

        [Test]
        public static void AWaitWithoutEndHasNoDeadline() =>
            Expect.Equal(null, Deadline.After(Timeout.InfiniteTimeSpan, () => { }));
    }
}
