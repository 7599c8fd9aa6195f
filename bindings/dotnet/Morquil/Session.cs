using System;
using System.Threading;
using System.Threading.Tasks;
using Morquil.Interop;

namespace Morquil
{
    /// <summary>A device has been connected by a session.</summary>
    public sealed class ConnectedEventArgs : EventArgs
    {
        internal ConnectedEventArgs(MorquilDevice device)
        {
            Device = device;
        }

        /// <summary>The device, a new object after each loss.</summary>
        public MorquilDevice Device { get; }
    }

    /// <summary>An attempt to connect has failed.</summary>
    public sealed class AttemptFailedEventArgs : EventArgs
    {
        internal AttemptFailedEventArgs(ConnectException error, TimeSpan pause)
        {
            Error = error;
            Pause = pause;
        }

        /// <summary>Why.</summary>
        public ConnectException Error { get; }

        /// <summary>The time until the next attempt.</summary>
        public TimeSpan Pause { get; }
    }

    /// <summary>Keeps a device connected: connects, and reconnects after every loss, from Start until it is disposed
    /// of.</summary>
    /// <remarks>Events are raised one after the other, in the SynchronizationContext that was current when the session
    /// was made, or on threads of the pool. Those of the device follow the same rule as its own.</remarks>
    public sealed class Session : IDisposable
    {
        private readonly Raiser raiser = new Raiser();
        private readonly CancellationTokenSource stopping = new CancellationTokenSource();
        private readonly object gate = new object();
        private TaskCompletionSource<MorquilDevice> connected = NewSource();
        private Task running;
        private volatile int raisingThread;

        /// <summary>A session for a host name or a numeric address; Start begins it.</summary>
        public Session(string address)
        {
            // Throws here, and not on a thread of the pool, for a text that cannot be an address or without a library.
            new LibraryText(address).Dispose();
            Address = address;
        }

        /// <summary>The device is connected.</summary>
        public event EventHandler<ConnectedEventArgs> Connected;

        /// <summary>The connection was lost.</summary>
        public event EventHandler<LostEventArgs> Lost;

        /// <summary>An attempt has failed.</summary>
        public event EventHandler<AttemptFailedEventArgs> AttemptFailed;

        /// <summary>The host name or the address, as it was given.</summary>
        public string Address { get; }

        /// <summary>The pause after the first failure; it doubles with each. 250 ms unless set before Start.</summary>
        public TimeSpan FirstPause { get; set; } = TimeSpan.FromMilliseconds(250);

        /// <summary>The longest pause: 5 s unless set before Start.</summary>
        public TimeSpan LongestPause { get; set; } = TimeSpan.FromSeconds(5);

        /// <summary>The device, while it is connected; else null.</summary>
        public MorquilDevice Current
        {
            get
            {
                var task = Device;
                return task.Status == TaskStatus.RanToCompletion ? task.Result : null;
            }
        }

        private Task<MorquilDevice> Device
        {
            get
            {
                lock (gate)
                {
                    Renew();
                    return connected.Task;
                }
            }
        }

        /// <summary>Begins to connect.</summary>
        public void Start()
        {
            lock (gate)
            {
                if (running != null || stopping.IsCancellationRequested)
                {
                    throw new InvalidOperationException("a session can be started once");
                }
                OpenObjects.Add(this);
                running = Task.Run(Run);
            }
        }

        /// <summary>The device; waits until it is connected. TimedOutException; LostException when the session is
        /// disposed of.</summary>
        public MorquilDevice Wait(TimeSpan timeout)
        {
            Callback.ExpectNone("Wait");
            var device = Device;
            return ((IAsyncResult)device).AsyncWaitHandle.WaitOne(timeout)
                ? device.GetAwaiter().GetResult()
                : throw new TimedOutException($"{Address}: not connected within {timeout.TotalSeconds} s");
        }

        /// <summary>As Wait.</summary>
        public async Task<MorquilDevice> WaitAsync(CancellationToken cancellation = default(CancellationToken))
        {
            var device = Device;
            await device.OrCancelled(cancellation).ConfigureAwait(false);
            cancellation.ThrowIfCancellationRequested();
            return await device.ConfigureAwait(false);
        }

        /// <summary>Ends the connection and all attempts; no handler starts afterwards.</summary>
        public void Dispose()
        {
            raiser.Stop();
            stopping.Cancel();
            Task task;
            lock (gate)
            {
                task = running = running ?? Task.Run(Run);
                OpenObjects.Remove(this);
            }
            // A handler of this session's own cannot wait for itself.
            if (raisingThread != Environment.CurrentManagedThreadId)
            {
                task.Wait();
            }
        }

        private async Task Run()
        {
            var backoff = new Backoff(FirstPause, LongestPause);
            while (!stopping.IsCancellationRequested)
            {
                await Serve(backoff).ConfigureAwait(false);
            }
            lock (gate)
            {
                Renew();
                connected.SetException(new LostException(
                    $"{Address}: the session was stopped", ConnectFailure.NoResponse, default(Outcome)));
                GC.KeepAlive(connected.Task.Exception);  // observed, whether or not anything waits for it
            }
        }

        /// <summary>One connection, from its beginning to its end, and the pause after it.</summary>
        private async Task Serve(Backoff backoff)
        {
            try
            {
                var connecting = MorquilDevice.ConnectAsync(Address, raiser.Sibling(), stopping.Token);
                using (var device = await connecting.ConfigureAwait(false))
                {
                    backoff.Reset();
                    lock (gate)
                    {
                        Renew();
                        connected.SetResult(device);
                    }
                    Raise(() => Connected?.Invoke(this, new ConnectedEventArgs(device)));
                    await device.Ended.OrCancelled(stopping.Token).ConfigureAwait(false);
                    Raise(() => Lost?.Invoke(this, new LostEventArgs(device.Loss())));
                }
                await Sleep(backoff.Pause()).ConfigureAwait(false);
            }
            catch (OperationCanceledException)
            {
                // The session is being disposed of.
            }
            catch (ConnectException error)
            {
                var pause = backoff.Pause();
                Raise(() => AttemptFailed?.Invoke(this, new AttemptFailedEventArgs(error, pause)));
                await Sleep(pause).ConfigureAwait(false);
            }
        }

        /// <summary>After a loss, a wait is for the next connection.</summary>
        private void Renew()
        {
            var task = connected.Task;
            if (task.Status == TaskStatus.RanToCompletion && !task.Result.IsConnected)
            {
                connected = NewSource();
            }
        }

        private Task Sleep(TimeSpan pause) => Task.WhenAny(Task.Delay(pause, stopping.Token));

        private void Raise(Action raise) => raiser.Raise(() =>
        {
            raisingThread = Environment.CurrentManagedThreadId;
            try
            {
                raise();
            }
            finally
            {
                raisingThread = 0;
            }
        });

        private static TaskCompletionSource<MorquilDevice> NewSource() =>
            new TaskCompletionSource<MorquilDevice>(TaskCreationOptions.RunContinuationsAsynchronously);
    }
}
