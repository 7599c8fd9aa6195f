using System;
using System.Collections.Concurrent;
using System.Runtime.InteropServices;

namespace Morquil.Interop
{
    /// <summary>The functions of an interface. The library stays loaded, so its tables stay where they are.</summary>
    internal sealed class FunctionTable
    {
        private const int MostSlots = 64;

        private static readonly ConcurrentDictionary<IntPtr, FunctionTable> Tables =
            new ConcurrentDictionary<IntPtr, FunctionTable>();

        private readonly IntPtr address;
        private readonly Delegate[] functions = new Delegate[MostSlots];

        private FunctionTable(IntPtr address)
        {
            this.address = address;
        }

        internal static FunctionTable Of(IntPtr pointer) =>
            Tables.GetOrAdd(Marshal.ReadIntPtr(pointer), address => new FunctionTable(address));

        internal T Function<T>(int slot) where T : class => functions[slot] as T ?? Make<T>(slot);

        private T Make<T>(int slot) where T : class
        {
            var made = Marshal.GetDelegateForFunctionPointer<T>(Marshal.ReadIntPtr(address, slot * IntPtr.Size));
            functions[slot] = (Delegate)(object)made;
            return made;
        }
    }
}
