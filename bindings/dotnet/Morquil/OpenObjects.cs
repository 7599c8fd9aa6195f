using System;
using System.Collections.Generic;
using System.Threading;

namespace Morquil.Interop
{
    /// <summary>What is disposed of before the program ends, the oldest first: afterwards, no thread of the library may
    /// call into it.</summary>
    internal static class OpenObjects
    {
        private static readonly TimeSpan LongestWait = TimeSpan.FromSeconds(2);
        private static readonly List<IDisposable> Objects = new List<IDisposable>();

        static OpenObjects()
        {
            AppDomain.CurrentDomain.ProcessExit += (sender, e) => DisposeAll();
        }

        internal static int Count
        {
            get
            {
                lock (Objects)
                {
                    return Objects.Count;
                }
            }
        }

        internal static void Add(IDisposable open)
        {
            lock (Objects)
            {
                Objects.Add(open);
            }
        }

        internal static void Remove(IDisposable open)
        {
            lock (Objects)
            {
                Objects.Remove(open);
                Monitor.PulseAll(Objects);
            }
        }

        /// <summary>Another thread may have begun to dispose of something before.</summary>
        private static void WaitForOthers()
        {
            lock (Objects)
            {
                while (Objects.Count > 0 && Monitor.Wait(Objects, LongestWait))
                {
                }
            }
        }

        private static void DisposeAll()
        {
            IDisposable[] open;
            lock (Objects)
            {
                open = Objects.ToArray();
            }
            foreach (var each in open)
            {
                each.Dispose();
            }
            WaitForOthers();
            Library.SilenceIfLoaded();
        }
    }
}
