using System;
using System.Threading;

namespace Morquil.Interop
{
    /// <summary>Raises events where the host wants them: in the context that was current when it began, one after the
    /// other, or on the library's own thread if there was none.</summary>
    internal sealed class Raiser
    {
        private readonly SynchronizationContext context;
        private volatile bool isStopped;

        internal Raiser() : this(SynchronizationContext.Current)
        {
        }

        private Raiser(SynchronizationContext context)
        {
            this.context = context;
        }

        /// <summary>Another one in the same context.</summary>
        internal Raiser Sibling() => new Raiser(context);

        internal void Raise(Action raise)
        {
            if (context == null)
            {
                Callback.Guard(() => RaiseHere(raise));
            }
            else
            {
                context.Post(_ => RaiseHere(raise), null);
            }
        }

        /// <summary>No handler starts any more.</summary>
        internal void Stop() => isStopped = true;

        private void RaiseHere(Action raise)
        {
            if (!isStopped)
            {
                raise();
            }
        }
    }
}
