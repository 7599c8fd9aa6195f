using System;
using System.Collections.Generic;
using System.Runtime.InteropServices;

namespace Morquil.Interop
{
    [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
    internal delegate IntPtr DiscoveryEntry();

    internal delegate IntPtr TextAllocator([MarshalAs(UnmanagedType.LPWStr)] string text, uint length);

    internal delegate uint TextLength(IntPtr text);

    internal delegate void TextDeleter(IntPtr text);

    /// <summary>The loaded library: the functions of its texts, and the object from which all others come.</summary>
    internal sealed class Library
    {
        private static readonly Lazy<Library> Loaded = new Lazy<Library>(Load);

        private Library(ComReference discovery, LibraryFile texts)
        {
            Discovery = discovery;
            AllocateText = texts.Function<TextAllocator>("SysAllocStringLen");
            LengthOfText = texts.Function<TextLength>("SysStringLen");
            FreeText = texts.Function<TextDeleter>("SysFreeString");
            Console = Discovery.Query(Slots.Console.Id);
            SetOutput(ConsoleMode.Silent, ComReference.None);
        }

        /// <summary>The first use loads the library and silences it: standard output belongs to the program.</summary>
        internal static Library Current => Loaded.Value;

        internal ComReference Discovery { get; }

        internal TextAllocator AllocateText { get; }

        internal TextLength LengthOfText { get; }

        internal TextDeleter FreeText { get; }

        private ComReference Console { get; }

        internal void SetOutput(ConsoleMode mode, ComReference observer) =>
            Results.Check("SetOutput",
                          Console.Function<CallInt32Reference>(Slots.Console.SetOutput)(Console, (int)mode, observer));

        internal static void SilenceIfLoaded()
        {
            if (Loaded.IsValueCreated)
            {
                Current.SetOutput(ConsoleMode.Silent, ComReference.None);
            }
        }

        private static Library Load()
        {
            var problems = new List<string>();
            foreach (var path in LibraryFile.Candidates())
            {
                var file = LibraryFile.Load(path, out var problem);
                if (file != null)
                {
                    var discovery = file.Function<DiscoveryEntry>("GetMorquilDiscoveryInstance_0000")();
                    return Make(discovery, file);
                }
                problems.Add(problem);
            }
            var registered = LibraryFile.IsWindows ? Registered() : IntPtr.Zero;
            if (registered != IntPtr.Zero)
            {
                return Make(registered, null);
            }
            throw new LibraryNotFoundException(
                "the library cannot be loaded; install it, or put its path into the environment variable " +
                $"MORQUIL_LIBRARY ({string.Join("; ", problems)})");
        }

        /// <summary>On Windows texts belong to the system, elsewhere to the library.</summary>
        private static Library Make(IntPtr discovery, LibraryFile file)
        {
            if (discovery == IntPtr.Zero)
            {
                throw new OutOfMemoryException("GetMorquilDiscoveryInstance_0000");
            }
            var texts = LibraryFile.IsWindows ? LibraryFile.Load("oleaut32.dll", out _) : file;
            return new Library(new ComReference(discovery), texts);
        }

        /// <summary>The discovery object of the library that is registered with Windows; null if none is.</summary>
        private static IntPtr Registered()
        {
            const uint inProcess = 1;
            var kind = Slots.DiscoveryClass;
            var id = Slots.Discovery.Id;
            return CoCreateInstance(ref kind, IntPtr.Zero, inProcess, ref id, out var found) >= 0 ? found : IntPtr.Zero;
        }

        [DllImport("ole32")]
        private static extern int CoCreateInstance(
            ref Guid kind, IntPtr outer, uint context, ref Guid id, out IntPtr found);
    }
}
