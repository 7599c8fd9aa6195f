using System;
using System.Collections.Generic;
using System.Diagnostics;
using System.Linq;
using System.Threading;

namespace Morquil.Interop
{
    /// <summary>The end of a wait. All of them share one timer, which is set again only when it has fired: a wait that
    /// ends in time sets none.</summary>
    internal sealed class Deadline : IDisposable
    {
        private static readonly HashSet<Deadline> Pending = new HashSet<Deadline>();
        private static readonly Stopwatch Clock = Stopwatch.StartNew();
        private static readonly Timer Timer = new Timer(_ => ExpireDue());
        private static TimeSpan next = TimeSpan.MaxValue;

        private readonly TimeSpan due;
        private readonly Action expire;

        private Deadline(TimeSpan due, Action expire)
        {
            this.due = due;
            this.expire = expire;
        }

        /// <summary>Calls `expire` on a thread of the pool when the time is up, unless it is disposed of before. Null
        /// for a wait without end.</summary>
        internal static Deadline After(TimeSpan timeout, Action expire)
        {
            if (timeout == Timeout.InfiniteTimeSpan)
            {
                return null;
            }
            var deadline = new Deadline(Clock.Elapsed + timeout, expire);
            lock (Pending)
            {
                Pending.Add(deadline);
                FireAt(deadline.due);
            }
            return deadline;
        }

        public void Dispose()
        {
            lock (Pending)
            {
                Pending.Remove(this);
            }
        }

        private static void FireAt(TimeSpan time)
        {
            if (time < next)
            {
                next = time;
                var pause = Math.Ceiling((time - Clock.Elapsed).TotalMilliseconds);
                Timer.Change((long)Math.Max(0, pause), Timeout.Infinite);
            }
        }

        private static void ExpireDue()
        {
            List<Deadline> over;
            lock (Pending)
            {
                var now = Clock.Elapsed;
                over = Pending.Where(each => each.due <= now).ToList();
                Pending.ExceptWith(over);
                next = TimeSpan.MaxValue;
                if (Pending.Count > 0)
                {
                    FireAt(Pending.Min(each => each.due));
                }
            }
            over.ForEach(each => each.expire());
        }
    }
}
