using System;
using System.Runtime.InteropServices;
#if NET8_0_OR_GREATER
using System.Runtime.InteropServices.Marshalling;
#endif

namespace Morquil.Interop
{
    /// <summary>Objects that the library calls.</summary>
    internal static class HostObject
    {
#if NET8_0_OR_GREATER
        private static readonly StrategyBasedComWrappers Wrappers = new StrategyBasedComWrappers();
#endif

        /// <summary>A reference to an interface of an observer.</summary>
        internal static ComReference Of<T>(T observer, Guid id)
        {
#if NET8_0_OR_GREATER
            var unknown = Wrappers.GetOrCreateComInterfaceForObject(observer, CreateComInterfaceFlags.None);
            Results.Check("QueryInterface", Marshal.QueryInterface(unknown, ref id, out var found));
            Marshal.Release(unknown);
            return new ComReference(found);
#else
            return new ComReference(Marshal.GetComInterfaceForObject(observer, typeof(T)));
#endif
        }
    }
}
