using System;
using Morquil.Interop;

namespace Morquil
{
    /// <summary>What the library prints: its messages, and everything that devices send. It is silent unless something
    /// else is chosen here, for all devices of the process.</summary>
    public static class MorquilLibrary
    {
        /// <summary>The library prints nothing.</summary>
        public static void Silence() => Library.Current.SetOutput(ConsoleMode.Silent, ComReference.None);

        /// <summary>Passes each line to a handler, on the library's threads, possibly on several at once, until another
        /// output is chosen.</summary>
        public static void SetOutput(Action<string> handler)
        {
            using (var observer = HostObject.Of<IMorquilConsoleObserver>(
                new ConsoleObserver(handler), Slots.ConsoleObserver.Id))
            {
                Library.Current.SetOutput(ConsoleMode.Observer, observer);
            }
        }

        /// <summary>The library prints to standard output.</summary>
        public static void RestoreOutput() => Library.Current.SetOutput(ConsoleMode.StandardOutput, ComReference.None);
    }
}
