using System;
using System.Runtime.InteropServices;

namespace Morquil.Tests
{
    /// <summary>How many references an object has.</summary>
    public static class References
    {
        /// <summary>Takes a reference, and expects that no other is left: a thread that is about to end may hold one a
        /// little longer.</summary>
        public static void ExpectLast(IntPtr pointer, string what)
        {
            Expect.Eventually(() =>
            {
                Marshal.AddRef(pointer);
                return Marshal.Release(pointer) == 1;
            }, $"the last reference to {what}");
            Expect.Equal(0, Marshal.Release(pointer), what);
        }
    }
}
