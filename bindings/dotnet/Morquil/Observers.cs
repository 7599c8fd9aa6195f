#if NET8_0_OR_GREATER
using System.Runtime.InteropServices.Marshalling;
#endif
using System;

namespace Morquil.Interop
{
    /// <summary>Records the beginning and the end of a connection.</summary>
#if NET8_0_OR_GREATER
    [GeneratedComClass]
#endif
    internal sealed partial class ConnectionObserver : IMorquilConnectionObserver
    {
        private readonly Link link;

        internal ConnectionObserver(Link link)
        {
            this.link = link;
        }

        public int Connected() => Callback.Run(link.Begin);

        public int Disconnected(ConnectFailure reason) => Callback.Run(() => link.End(reason));
    }

    /// <summary>Passes on what the device reports.</summary>
#if NET8_0_OR_GREATER
    [GeneratedComClass]
#endif
    internal sealed partial class ReportObserver : IMorquilReportObserver
    {
        private readonly WeakReference<Tracker> tracker;

        internal ReportObserver(Tracker tracker)
        {
            this.tracker = new WeakReference<Tracker>(tracker);
        }

        public int BlockReported(PropertySet propertySet, ReportKind kind, ReportOrigin origin) => Callback.Run(() =>
        {
            if (kind == ReportKind.Settings && tracker.TryGetTarget(out var target))
            {
                target.Report(propertySet, origin == ReportOrigin.Echo);
            }
        });
    }

    /// <summary>Receives what the library prints.</summary>
#if NET8_0_OR_GREATER
    [GeneratedComClass]
#endif
    internal sealed partial class ConsoleObserver : IMorquilConsoleObserver
    {
        private readonly Action<string> handler;

        internal ConsoleObserver(Action<string> handler)
        {
            this.handler = handler;
        }

        public int Line(string text) => Callback.Run(() => handler(text));
    }
}
