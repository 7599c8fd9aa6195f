using System;
using System.Runtime.InteropServices;

namespace Morquil.Interop
{
    /// <summary>A text as the interfaces take it. The library's own functions make and free it, because not every
    /// runtime has the same form of BSTR outside Windows.</summary>
    internal sealed class LibraryText : SafeHandle
    {
        /// <summary>InvalidValueException for a text that the interfaces do not take.</summary>
        internal LibraryText(string text) : base(IntPtr.Zero, true)
        {
            var problem = ProblemOf(text);
            if (problem != null)
            {
                throw new InvalidValueException(problem);
            }
            SetHandle(Allocate(text));
        }

        public override bool IsInvalid => handle == IntPtr.Zero;

        /// <summary>What is wrong with a text; null if nothing is.</summary>
        internal static string ProblemOf(string text)
        {
            if (text == null)
            {
                return "a text is null";
            }
            for (var at = 0; at < text.Length; ++at)
            {
                if (char.IsSurrogate(text[at]) && !char.IsSurrogatePair(text, at++))
                {
                    return "a text has half a character in it";
                }
            }
            return text.IndexOfAny(new[] { '\n', '\r', '\0' }) < 0
                ? null : "a text has neither line ends nor zero characters in it";
        }

        internal static IntPtr Allocate(string text)
        {
            var allocated = Library.Current.AllocateText(text, (uint)text.Length);
            return allocated != IntPtr.Zero ? allocated : throw new OutOfMemoryException("SysAllocStringLen");
        }

        internal static string Read(IntPtr text) =>
            text == IntPtr.Zero ? "" : Marshal.PtrToStringUni(text, (int)Library.Current.LengthOfText(text));

        internal static void Free(IntPtr text) => Library.Current.FreeText(text);

        /// <summary>Reads and frees a text that a method has returned.</summary>
        internal static string Take(IntPtr text)
        {
            try
            {
                return Read(text);
            }
            finally
            {
                Free(text);
            }
        }

        protected override bool ReleaseHandle()
        {
            Free(handle);
            return true;
        }
    }
}
