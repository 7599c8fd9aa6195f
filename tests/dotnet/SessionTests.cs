using System;
using System.Collections.Concurrent;
using System.Linq;
using System.Threading;
using System.Threading.Tasks;
using Morquil.Interop;

namespace Morquil.Tests
{
    /// <summary>Connections that are restored.</summary>
    public static class SessionTests
    {
        private static readonly TimeSpan Shortly = TimeSpan.FromMilliseconds(10);

        [Test]
        public static void PausesDoubleUpToTheLongestAndVaryByAQuarter()
        {
            var backoff = new Backoff(TimeSpan.FromSeconds(1), TimeSpan.FromSeconds(5));
            foreach (var middle in new[] { 1, 2, 4, 5, 5 })
            {
                var pause = backoff.Pause().TotalSeconds;
                Expect.True(0.75 * middle <= pause && pause <= 1.25 * middle, $"{pause} after {middle}");
            }
            backoff.Reset();
            Expect.True(backoff.Pause().TotalSeconds <= 1.25, "not reset");
        }

        [Test]
        public static void ASessionReconnectsAfterALoss()
        {
            using (var simulated = new SimulatedDevice())
            using (var session = new Session(simulated.Address) { FirstPause = Shortly })
            {
                var events = new BlockingCollection<object>();
                session.Connected += (sender, e) => events.Add(e.Device);
                session.Lost += (sender, e) => events.Add(e.Error);
                session.Start();
                var first = (MorquilDevice)Take(events);
                Expect.Equal(first, session.Wait(Expect.Soon));
                simulated.Command("drop");
                Expect.True(Take(events) is LostException, "no loss");
                var second = (MorquilDevice)Take(events);
                Expect.True(first != second && second.Set("proc-amp.gain", 1).IsApplied, "not restored");
                Expect.Equal(second, session.WaitAsync().Result);
                session.Dispose();
                Expect.True(session.Current == null && !second.IsConnected, "connected");
                Expect.Throws<LostException>(() => session.Wait(Expect.Soon), "the session was stopped");
            }
        }

        [Test]
        public static void ASessionSurvivesARestartOfTheDevice()
        {
            using (var simulated = new SimulatedDevice())
            using (var session = new Session(simulated.Address) { FirstPause = Shortly, LongestPause = Shortly })
            {
                var failures = new BlockingCollection<object>();
                session.AttemptFailed += (sender, e) => failures.Add(e.Error);
                session.Start();
                session.Wait(Expect.Soon);
                simulated.Dispose();
                Expect.True(Take(failures) is ConnectException, "no failure");
                simulated.Restart();
                Expect.Equal(0, session.Wait(Expect.Soon).Get("proc-amp.gain"));
            }
        }

        [Test]
        public static void DisposingEndsAWait()
        {
            var session = new Session("127.250.250.250") { FirstPause = Expect.Soon };
            session.Start();
            var waiting = session.WaitAsync();
            session.Dispose();
            Expect.Throws<LostException>(() => waiting.GetAwaiter().GetResult(), "the session was stopped");
            session.Dispose();
            Expect.Throws<InvalidOperationException>(session.Start);
        }

        [Test]
        public static void ASessionThatWasNeverStartedCanBeDisposedOf()
        {
            var session = new Session("127.250.250.250");
            session.Dispose();
            Expect.Throws<LostException>(() => session.Wait(Expect.Soon));
        }

        [Test]
        public static void ASessionRefusesATextThatCannotBeAnAddress() =>
            Expect.Throws<InvalidValueException>(() => new Session("two\nlines"));

        [Test]
        public static void WaitingCanHaveALimit()
        {
            using (var session = new Session("127.250.250.250") { FirstPause = Expect.Soon })
            using (var cancelling = new CancellationTokenSource())
            {
                session.Start();
                Expect.Throws<TimedOutException>(() => session.Wait(Shortly));
                var waiting = session.WaitAsync(cancelling.Token);
                cancelling.Cancel();
                Expect.Throws<OperationCanceledException>(() => waiting.GetAwaiter().GetResult());
            }
        }

        [Test]
        public static void ASessionMayBeDisposedOfByItsOwnHandler()
        {
            using (var simulated = new SimulatedDevice())
            {
                var session = new Session(simulated.Address);
                var isDisposed = new ManualResetEventSlim();
                session.Connected += (sender, e) =>
                {
                    session.Dispose();
                    isDisposed.Set();
                };
                session.Start();
                Expect.True(isDisposed.Wait(Expect.Soon), "not disposed of");
                session.Dispose();
            }
        }

        [Test]
        public static void EventsOfASessionAndItsDeviceAreRaisedInItsContext()
        {
            using (var context = new OwnContext())
            using (var simulated = new SimulatedDevice())
            using (var session = new Session(simulated.Address) { FirstPause = Shortly })
            {
                var threads = new ConcurrentBag<int>();
                session.Connected += (sender, e) =>
                {
                    threads.Add(Environment.CurrentManagedThreadId);
                    e.Device.Changed += (device, change) => threads.Add(Environment.CurrentManagedThreadId);
                    simulated.Command("set VIDEO PROC AMP Gain 12");
                };
                session.Start();
                context.RunUntil(() => threads.Count == 2);
                Expect.True(threads.All(thread => thread == Environment.CurrentManagedThreadId), "another thread");
            }
        }

        [Test]
        public static void RecoveriesLeaveNothing()
        {
            var count = TestRunner.IsLong ? 1000 : 20;
            using (var simulated = new SimulatedDevice())
            using (var session = new Session(simulated.Address) { FirstPause = TimeSpan.FromMilliseconds(1) })
            {
                session.Start();
                for (var recovered = 0; recovered < count; ++recovered)
                {
                    var device = session.Wait(Expect.Soon);
                    Expect.Equal(1u, device.Set("proc-amp.gain", recovered % 50 + 1).Acknowledged);
                    simulated.Command("drop");
                    Expect.Eventually(() => !ReferenceEquals(session.Current, device), "the loss");
                    session.Wait(Expect.Soon);
                }
                Expect.Equal(2, OpenObjects.Count);
            }
        }

        private static object Take(BlockingCollection<object> events)
        {
            Expect.True(events.TryTake(out var taken, Expect.Soon), "no event");
            return taken;
        }
    }
}
