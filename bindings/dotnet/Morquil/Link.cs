using System.Threading.Tasks;

namespace Morquil.Interop
{
    /// <summary>What is known of a connection, for everything that depends on it.</summary>
    internal sealed class Link
    {
        // Both are completed on the library's thread, which no continuation may hold up.
        private readonly TaskCompletionSource<ConnectFailure> begun = NewSource();
        private readonly TaskCompletionSource<ConnectFailure> ended = NewSource();

        internal Link(string address)
        {
            Address = address;
        }

        internal string Address { get; }

        /// <summary>NoFailure when the device is connected, else why the attempt has failed.</summary>
        internal Task<ConnectFailure> Begun => begun.Task;

        internal Task<ConnectFailure> Ended => ended.Task;

        internal bool HasEnded => ended.Task.IsCompleted;

        /// <summary>Whether this host has ended it, before anything else did.</summary>
        internal bool IsClosed { get; set; }

        internal void Begin() => begun.TrySetResult(ConnectFailure.NoFailure);

        internal void End(ConnectFailure reason)
        {
            ended.TrySetResult(reason);
            begun.TrySetResult(reason);
        }

        internal ConnectException Failure() => new ConnectException($"{Address}: {Text(Begun.Result)}", Begun.Result);

        /// <summary>The exception for a connection that has ended.</summary>
        internal LostException Loss(Outcome outcome = default(Outcome))
        {
            if (IsClosed)
            {
                return new LostException($"{Address}: the connection was closed", ConnectFailure.NoResponse, outcome);
            }
            var reason = HasEnded ? Ended.Result : ConnectFailure.NoResponse;
            return new LostException($"{Address}: the connection has ended: {Text(reason)}", reason, outcome);
        }

        private static string Text(ConnectFailure reason)
        {
            switch (reason)
            {
                case ConnectFailure.NoResponse:
                    return "no answer from a device";
                case ConnectFailure.IncompatibleFirmware:
                    return "the device's firmware speaks another version of the protocol";
                case ConnectFailure.IncompatibleUpdateSupported:
                    return Text(ConnectFailure.IncompatibleFirmware) + ", and can be updated over the network";
                case ConnectFailure.RemoteLock:
                    return "the device is locked against remote control";
                default:
                    return reason.ToString();
            }
        }

        private static TaskCompletionSource<ConnectFailure> NewSource() =>
            new TaskCompletionSource<ConnectFailure>(TaskCreationOptions.RunContinuationsAsynchronously);
    }
}
