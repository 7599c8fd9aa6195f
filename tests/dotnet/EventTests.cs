using System;
using System.Collections.Concurrent;
using System.Linq;
using System.Threading;
using System.Threading.Tasks;

namespace Morquil.Tests
{
    /// <summary>Runs what is posted on the thread that asks for it, as a window's thread does.</summary>
    public sealed class OwnContext : SynchronizationContext, IDisposable
    {
        private readonly BlockingCollection<Action> posted = new BlockingCollection<Action>();
        private readonly SynchronizationContext before = Current;

        public OwnContext()
        {
            SetSynchronizationContext(this);
        }

        public override void Post(SendOrPostCallback callback, object state) => posted.Add(() => callback(state));

        /// <summary>Runs what is posted until a condition holds.</summary>
        public void RunUntil(Func<bool> condition)
        {
            while (!condition())
            {
                Expect.True(posted.TryTake(out var action, Expect.Soon), "nothing was posted");
                action();
            }
        }

        public void Dispose() => SetSynchronizationContext(before);
    }

    /// <summary>Notices of changes and of the end.</summary>
    public static class EventTests
    {
        [Test]
        public static void AChangeElsewhereIsRaisedWithOldAndNewValue() => DeviceTests.WithDevice((device, simulated) =>
        {
            var changes = new BlockingCollection<ChangedEventArgs>();
            device.Changed += (sender, change) => changes.Add(change);
            simulated.Command("set VIDEO PROC AMP Gain 12");
            var seen = Take(changes);
            Expect.Equal("proc-amp.gain: 0, now 12", seen.ToString());
            Expect.True(Equals(0, seen.Old) && Equals(12, seen.New) && !seen.IsEcho, seen.ToString());
            device.Set("output.video-mode", "1080p50");
            seen = Take(changes);
            Expect.Equal("output.video-mode: 1080i50, now 1080p50", seen.ToString());
        });

        [Test]
        public static void AnOwnChangeIsRaisedAsAnEcho() => DeviceTests.WithDevice((device, simulated) =>
        {
            var changes = new BlockingCollection<ChangedEventArgs>();
            EventHandler<ChangedEventArgs> handler = (sender, change) => changes.Add(change);
            device.Changed += handler;
            device.Set("proc-amp.gain", 7);
            var seen = Take(changes);
            Expect.True(seen.IsEcho && seen.Name == "proc-amp.gain", seen.ToString());
            device.Changed -= handler;
            device.Set("proc-amp.gain", 8);
            Expect.Equal(0, changes.Count);
        });

        [Test]
        public static void EventsAreRaisedInTheContextOfTheConnect()
        {
            using (var context = new OwnContext())
            using (var simulated = new SimulatedDevice())
            using (var device = MorquilDevice.Connect(simulated.Address))
            {
                var threads = new ConcurrentBag<int>();
                var isLost = false;
                device.Changed += (sender, change) => threads.Add(Environment.CurrentManagedThreadId);
                device.Lost += (sender, loss) =>
                {
                    threads.Add(Environment.CurrentManagedThreadId);
                    isLost = loss.Error.Reason == ConnectFailure.NoResponse;
                };
                simulated.Command("set VIDEO PROC AMP Gain 12");
                context.RunUntil(() => threads.Count == 1);
                simulated.Command("drop");
                context.RunUntil(() => isLost);
                Expect.True(threads.All(thread => thread == Environment.CurrentManagedThreadId), "another thread");
            }
        }

        [Test]
        public static void AHandlerInAContextMayWaitForTheDevice()
        {
            using (var context = new OwnContext())
            using (var simulated = new SimulatedDevice())
            using (var device = MorquilDevice.Connect(simulated.Address))
            {
                var isApplied = false;
                device.Changed += (sender, change) => isApplied = isApplied || device.Set("proc-amp.hue", 3).IsApplied;
                simulated.Command("set VIDEO PROC AMP Gain 12");
                context.RunUntil(() => isApplied);
            }
        }

        [Test]
        public static void AnAwaitInAContextComesBackToIt()
        {
            using (var context = new OwnContext())
            using (var simulated = new SimulatedDevice())
            {
                var test = AwaitInContext(simulated.Address);
                context.RunUntil(() => test.IsCompleted);
                Expect.Equal(Environment.CurrentManagedThreadId, test.GetAwaiter().GetResult());
            }
        }

        [Test]
        public static void AHandlerOnTheLibrarysThreadCannotWaitForIt() => DeviceTests.WithDevice((device, simulated) =>
        {
            var result = new TaskCompletionSource<Exception>();
            device.Changed += (sender, change) =>
            {
                try
                {
                    device.Set("proc-amp.hue", 3);
                }
                catch (MorquilException error)
                {
                    result.TrySetResult(error);
                }
            };
            simulated.Command("set VIDEO PROC AMP Gain 12");
            Expect.True(result.Task.Wait(Expect.Soon), "no change");
            Expect.Equal(typeof(WouldDeadlockException), result.Task.Result.GetType());
        });

        [Test]
        public static void AHandlerOnTheLibrarysThreadMayBeginToWait() => DeviceTests.WithDevice((device, simulated) =>
        {
            var result = new TaskCompletionSource<Task<Outcome>>();
            device.Changed += (sender, change) =>
            {
                if (change.Name == "proc-amp.gain")
                {
                    result.TrySetResult(device.SetAsync("proc-amp.hue", 3));
                }
            };
            simulated.Command("set VIDEO PROC AMP Gain 12");
            Expect.True(result.Task.Wait(Expect.Soon), "no change");
            Expect.True(result.Task.Result.Result.IsApplied, "not applied");
        });

        [Test]
        public static void ADeviceMayBeDisposedOfInItsHandler()
        {
            using (var simulated = new SimulatedDevice())
            {
                var device = MorquilDevice.Connect(simulated.Address);
                var isDisposed = new ManualResetEventSlim();
                device.Changed += (sender, change) =>
                {
                    device.Dispose();
                    isDisposed.Set();
                };
                simulated.Command("set VIDEO PROC AMP Gain 12");
                Expect.True(isDisposed.Wait(Expect.Soon), "not disposed of");
                Expect.True(!device.IsConnected, "connected");
            }
        }

        [Test]
        public static void ADisposedDeviceRaisesNothing()
        {
            using (var context = new OwnContext())
            using (var simulated = new SimulatedDevice())
            {
                var raised = 0;
                using (var device = MorquilDevice.Connect(simulated.Address))
                {
                    device.Changed += (sender, change) => ++raised;
                    device.Lost += (sender, loss) => ++raised;
                    device.Set("proc-amp.gain", 5);
                }
                // What was posted before is run after.
                var isLast = false;
                context.Post(_ => isLast = true, null);
                context.RunUntil(() => isLast);
                Expect.Equal(0, raised);
            }
        }

        private static async Task<int> AwaitInContext(string address)
        {
            using (var device = await MorquilDevice.ConnectAsync(address))
            {
                await device.SetAsync("proc-amp.gain", 3);
                return Environment.CurrentManagedThreadId;
            }
        }

        private static ChangedEventArgs Take(BlockingCollection<ChangedEventArgs> changes)
        {
            Expect.True(changes.TryTake(out var change, Expect.Soon), "no change");
            return change;
        }
    }
}
