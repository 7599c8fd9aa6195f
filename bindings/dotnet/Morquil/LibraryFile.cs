using System;
using System.Collections.Generic;
using System.IO;
using System.Runtime.InteropServices;

namespace Morquil.Interop
{
    /// <summary>Where the library is, and how its functions are found. What is loaded stays loaded.</summary>
    internal sealed class LibraryFile
    {
        private readonly IntPtr module;

        private LibraryFile(IntPtr module)
        {
            this.module = module;
        }

        internal static bool IsWindows => Environment.OSVersion.Platform == PlatformID.Win32NT;

        private static string Name => IsWindows ? "MorquilAPI.dll" : "libMorquilAPI.so.1";

        /// <summary>Where the library may be, the most specific place first.</summary>
        internal static IEnumerable<string> Candidates()
        {
            var chosen = Environment.GetEnvironmentVariable("MORQUIL_LIBRARY");
            if (!string.IsNullOrEmpty(chosen))
            {
                yield return chosen;
                yield break;
            }
            var beside = Path.Combine(AppDomain.CurrentDomain.BaseDirectory, Name);
            if (File.Exists(beside))
            {
                yield return beside;
            }
            yield return Name;
        }

        /// <summary>Loads a file; null, and why, if that fails.</summary>
        internal static LibraryFile Load(string path, out string problem)
        {
            var module = IsWindows ? Windows.LoadLibrary(path) : Posix.Open(path, Posix.Now);
            problem = module != IntPtr.Zero ? null
                : IsWindows ? $"{path}: error {Marshal.GetLastWin32Error()}" : Marshal.PtrToStringAnsi(Posix.Error());
            return module == IntPtr.Zero ? null : new LibraryFile(module);
        }

        internal T Function<T>(string name)
        {
            var function = IsWindows ? Windows.GetProcAddress(module, name) : Posix.Symbol(module, name);
            return function != IntPtr.Zero ? Marshal.GetDelegateForFunctionPointer<T>(function)
                : throw new LibraryNotFoundException($"the library has no function {name}");
        }

        private static class Windows
        {
            [DllImport("kernel32", CharSet = CharSet.Unicode, SetLastError = true)]
            internal static extern IntPtr LoadLibrary(string path);

            [DllImport("kernel32", CharSet = CharSet.Ansi, ExactSpelling = true)]
            internal static extern IntPtr GetProcAddress(IntPtr module, string name);
        }

        private static class Posix
        {
            internal const int Now = 2;

            [DllImport("libdl.so.2", EntryPoint = "dlopen", CharSet = CharSet.Ansi)]
            internal static extern IntPtr Open(string path, int mode);

            [DllImport("libdl.so.2", EntryPoint = "dlsym", CharSet = CharSet.Ansi)]
            internal static extern IntPtr Symbol(IntPtr module, string name);

            [DllImport("libdl.so.2", EntryPoint = "dlerror")]
            internal static extern IntPtr Error();
        }
    }
}
