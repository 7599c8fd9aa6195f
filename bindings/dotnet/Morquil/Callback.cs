using System;
using System.Runtime.ExceptionServices;
using System.Threading;

namespace Morquil.Interop
{
    /// <summary>Calls of the library into this host.</summary>
    internal static class Callback
    {
        [ThreadStatic]
        private static bool isRunning;

        /// <summary>Runs what a callback does.</summary>
        internal static int Run(Action action)
        {
            var isOutermost = !isRunning;
            isRunning = true;
            Guard(action);
            isRunning = !isOutermost;
            return Results.Ok;
        }

        /// <summary>An exception does not reach the caller: it ends the program, as one of any other thread
        /// does.</summary>
        internal static void Guard(Action action)
        {
            try
            {
                action();
            }
            catch (Exception error)
            {
                var thrown = ExceptionDispatchInfo.Capture(error);
                ThreadPool.QueueUserWorkItem(_ => thrown.Throw());
            }
        }

        /// <summary>For calls that wait for the library's thread.</summary>
        internal static void ExpectNone(string call)
        {
            if (isRunning)
            {
                throw new WouldDeadlockException(
                    $"{call}: it waits for the library's thread, and this handler runs on it: await {call}Async");
            }
        }
    }
}
