using System;
using System.Collections.Generic;
using System.IO;
using System.Threading;
using System.Threading.Tasks;
using Morquil.Features;
using Morquil.Interop;

namespace Morquil
{
    /// <summary>One connection to one device: its features, its properties by name, its changes. A connection is used
    /// only once: see Session for one that reconnects.</summary>
    /// <remarks>Every member may be used from any thread. Events are raised in the SynchronizationContext that was
    /// current when the device was connected; without one, Changed is raised on the library's own thread, where a
    /// handler must return quickly and cannot wait for the device.</remarks>
    public sealed partial class MorquilDevice : IDisposable
    {
        private readonly Connection connection;
        private readonly Raiser raiser;
        private readonly object gate = new object();

        internal MorquilDevice(Connection connection, Raiser raiser)
        {
            this.connection = connection;
            this.raiser = raiser;
            Calls = new DeviceCalls(connection.Device, this);
            var self = new WeakReference<MorquilDevice>(this);
            connection.Link.Ended.ContinueWith(_ => RaiseLost(self), TaskScheduler.Default);
        }

        /// <summary>A device that nothing refers to any more is closed, but not on the thread of the finalizers:
        /// closing waits for the library's thread, and Mono cannot release the last reference of an observer
        /// there.</summary>
        ~MorquilDevice()
        {
            raiser?.Stop();
            if (connection != null)
            {
                ThreadPool.QueueUserWorkItem(_ => connection.Dispose());
            }
        }

        /// <summary>The host name or the address, as it was given.</summary>
        public string Address => connection.Link.Address;

        /// <summary>Whether the connection is up.</summary>
        public bool IsConnected => !connection.Link.HasEnded;

        /// <summary>How long a change may take to be confirmed: 10 seconds unless set.</summary>
        public TimeSpan Timeout { get; set; } = TimeSpan.FromSeconds(10);

        /// <summary>How long the device has sent nothing. One that answers is never silent for much longer than 9
        /// seconds; one that is silent for 18 does not answer.</summary>
        public TimeSpan Silence => IsConnected ? connection.Silence : throw connection.Link.Loss();

        /// <summary>The device's own methods.</summary>
        public DeviceCalls Calls { get; }

        internal Task Ended => connection.Link.Ended;

        /// <summary>Connects, and waits until the device's complete state has arrived: without a limit of your own, 2
        /// seconds for the connection and 2 minutes for the state. ConnectException says why it failed.</summary>
        public static MorquilDevice Connect(string address, TimeSpan? timeout = null)
        {
            Callback.ExpectNone("Connect");
            var raiser = new Raiser();
            var connection = new Connection(address);
            try
            {
                if (!connection.Link.Begun.Wait(timeout ?? System.Threading.Timeout.InfiniteTimeSpan))
                {
                    throw new TimedOutException($"{address}: not connected within {timeout.Value.TotalSeconds} s");
                }
                return Connected(connection, raiser);
            }
            catch
            {
                connection.Dispose();
                throw;
            }
        }

        /// <summary>As Connect.</summary>
        public static Task<MorquilDevice> ConnectAsync(
            string address, CancellationToken cancellation = default(CancellationToken)) =>
            ConnectAsync(address, new Raiser(), cancellation);

        internal static async Task<MorquilDevice> ConnectAsync(
            string address, Raiser raiser, CancellationToken cancellation)
        {
            cancellation.ThrowIfCancellationRequested();
            var connection = new Connection(address);
            try
            {
                await connection.Link.Begun.OrCancelled(cancellation).ConfigureAwait(false);
                cancellation.ThrowIfCancellationRequested();
                return Connected(connection, raiser);
            }
            catch
            {
                connection.Dispose();
                throw;
            }
        }

        /// <summary>Sets a property, and waits until the device has confirmed it. A command may have no value. Throws,
        /// without sending anything, what Check throws; then RefusedException, LostException or
        /// TimedOutException.</summary>
        public Outcome Set(string name, object value = null) => Apply(Prepare(name, value));

        /// <summary>As Set.</summary>
        public Task<Outcome> SetAsync(
            string name, object value = null, CancellationToken cancellation = default(CancellationToken)) =>
            ApplyAsync(Prepare(name, value), cancellation);

        /// <summary>Sets several properties at once, as Set does. All are checked before anything is sent.</summary>
        public Outcome Update(IEnumerable<KeyValuePair<string, object>> values) => Apply(PrepareAll(values));

        /// <summary>As Update.</summary>
        public Task<Outcome> UpdateAsync(
            IEnumerable<KeyValuePair<string, object>> values,
            CancellationToken cancellation = default(CancellationToken)) =>
            ApplyAsync(PrepareAll(values), cancellation);

        /// <summary>Runs an action, which calls setters of features, and waits until the device has confirmed what was
        /// set in it. What the action throws is thrown here; what it has set before is still sent. RefusedException,
        /// LostException, TimedOutException; WouldDeadlockException on the library's own threads.</summary>
        public Outcome Apply(Action change)
        {
            Callback.ExpectNone("Apply");
            using (var receipt = connection.OpenReceipt())
            {
                receipt.Queue(change);
                return receipt.Wait(Timeout);
            }
        }

        /// <summary>As Apply. The action runs before this returns.</summary>
        public async Task<Outcome> ApplyAsync(
            Action change, CancellationToken cancellation = default(CancellationToken))
        {
            cancellation.ThrowIfCancellationRequested();
            using (var receipt = connection.OpenReceipt())
            {
                receipt.Queue(change);
                return await receipt.WaitAsync(Timeout, cancellation).ConfigureAwait(false);
            }
        }

        /// <summary>Saves the device's settings in a file. It is replaced as a whole, and only if everything is
        /// known.</summary>
        public void SaveSettings(string path)
        {
            if (IsConnected)
            {
                SettingsFile.Save(Calls, path);
            }
            if (!IsConnected)
            {
                throw connection.Link.Loss();
            }
        }

        /// <summary>Sends the settings in a file, and waits until the device has accepted or refused them. What it
        /// accepts it reports a little later. Kept counts the settings that are never sent.</summary>
        public Outcome LoadSettings(string path)
        {
            Callback.ExpectNone("LoadSettings");
            using (var receipt = connection.OpenReceipt().UntilAnswered())
            {
                receipt.Queue(() => QueueSettings(path));
                return receipt.Wait(Timeout);
            }
        }

        /// <summary>As LoadSettings.</summary>
        public async Task<Outcome> LoadSettingsAsync(
            string path, CancellationToken cancellation = default(CancellationToken))
        {
            cancellation.ThrowIfCancellationRequested();
            using (var receipt = connection.OpenReceipt().UntilAnswered())
            {
                receipt.Queue(() => QueueSettings(path));
                return await receipt.WaitAsync(Timeout, cancellation).ConfigureAwait(false);
            }
        }

        /// <summary>Ends the connection. No event is raised afterwards.</summary>
        public void Dispose()
        {
            raiser.Stop();
            connection.Dispose();
            GC.SuppressFinalize(this);
        }

        /// <summary>"192.168.1.10, connected".</summary>
        public override string ToString() => $"{Address}, {(IsConnected ? "connected" : "not connected")}";

        internal LostException Loss() => connection.Link.Loss();

        private static MorquilDevice Connected(Connection connection, Raiser raiser) =>
            connection.Link.Begun.Result == ConnectFailure.NoFailure
                ? new MorquilDevice(connection, raiser) : throw connection.Link.Failure();

        /// <summary>The library reports nothing about a file that cannot be read: opening it does.</summary>
        private void QueueSettings(string path)
        {
            File.OpenRead(path).Dispose();
            Calls.LoadSettingsFile(path);
        }

        private T Feature<T>(ref T field, Guid id, Func<ComReference, MorquilDevice, T> make) where T : Feature
        {
            if (Volatile.Read(ref field) == null)
            {
                lock (gate)
                {
                    if (field == null)
                    {
                        var self = connection.Device.Query(id);
                        connection.Add(self);
                        field = make(self, this);
                    }
                }
            }
            return field;
        }
    }
}
