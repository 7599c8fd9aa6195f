using System;
using System.Runtime.InteropServices;

namespace Morquil.Interop
{
    /// <summary>One reference to an object: of the library, or of this host for the library. It is released when it is
    /// disposed of, and no call on another thread uses it any more.</summary>
    /// <remarks>Methods are called through the object's table of functions. The runtime's own wrappers of COM objects
    /// belong to the apartment that made them, and calls from another one need a proxy, which the library, whose
    /// methods may be called from any thread, does not have.</remarks>
    internal sealed class ComReference : SafeHandle
    {
        private readonly FunctionTable functions;

        /// <summary>Takes a reference.</summary>
        internal ComReference(IntPtr pointer) : base(IntPtr.Zero, true)
        {
            SetHandle(pointer);
            functions = pointer == IntPtr.Zero ? null : FunctionTable.Of(pointer);
        }

        internal static ComReference None => new ComReference(IntPtr.Zero);

        public override bool IsInvalid => handle == IntPtr.Zero;

        internal T Function<T>(int slot) where T : class => functions.Function<T>(slot);

        /// <summary>Another interface of the same object.</summary>
        internal ComReference Query(Guid id)
        {
            var isHeld = false;
            try
            {
                DangerousAddRef(ref isHeld);
                Results.Check("QueryInterface", Marshal.QueryInterface(handle, ref id, out var found));
                return new ComReference(found);
            }
            finally
            {
                if (isHeld)
                {
                    DangerousRelease();
                }
            }
        }

        protected override bool ReleaseHandle()
        {
            Marshal.Release(handle);
            return true;
        }
    }
}
