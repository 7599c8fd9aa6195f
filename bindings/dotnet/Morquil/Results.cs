using System;

namespace Morquil.Interop
{
    /// <summary>What a call has returned.</summary>
    internal static class Results
    {
        internal const int Ok = 0;
        internal const int False = 1;
        internal const int Fail = unchecked((int)0x80004005);
        internal const int InvalidArgument = unchecked((int)0x80070057);
        internal const int NoInterface = unchecked((int)0x80004002);
        internal const int OutOfMemory = unchecked((int)0x8007000E);
        internal const int Pointer = unchecked((int)0x80004003);

        /// <summary>Throws unless a call has succeeded.</summary>
        internal static void Check(string call, int result)
        {
            if (result < 0)
            {
                throw Failure(call, result);
            }
        }

        internal static Exception Failure(string call, int result) =>
            result == OutOfMemory ? (Exception)new OutOfMemoryException(call)
                : new MorquilException($"{call}: {Meaning(result)}");

        private static string Meaning(int result)
        {
            switch (result)
            {
                case Fail:
                    return "not accepted: the library's thread cannot be woken";
                case InvalidArgument:
                    return "the value is outside its bounds";
                case NoInterface:
                    return "the library is too old: it has no such interface";
                case Pointer:
                    return "a pointer is null";
                default:
                    return $"result 0x{result:x8}";
            }
        }
    }
}
