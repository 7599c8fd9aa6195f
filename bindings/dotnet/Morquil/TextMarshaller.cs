#if NET8_0_OR_GREATER
using System;
using System.Runtime.InteropServices.Marshalling;

namespace Morquil.Interop
{
    /// <summary>Texts of source-generated interfaces.</summary>
    [CustomMarshaller(typeof(string), MarshalMode.Default, typeof(TextMarshaller))]
    [CustomMarshaller(typeof(string), MarshalMode.UnmanagedToManagedIn, typeof(OfCaller))]
    internal static class TextMarshaller
    {
        public static IntPtr ConvertToUnmanaged(string text) =>
            text == null ? IntPtr.Zero : LibraryText.Allocate(text);

        public static string ConvertToManaged(IntPtr text) => LibraryText.Read(text);

        public static void Free(IntPtr text) => LibraryText.Free(text);

        /// <summary>A text that an observer is called with stays the library's.</summary>
        internal static class OfCaller
        {
            public static string ConvertToManaged(IntPtr text) => LibraryText.Read(text);
        }
    }
}
#endif
