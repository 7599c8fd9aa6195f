using System;
using System.Diagnostics;

namespace Morquil.Tests
{
    /// <summary>A running morquil-sim, at an address that no other test uses.</summary>
    public sealed class SimulatedDevice : IDisposable
    {
        private static int count;

        private readonly string options;
        private Process process;

        public SimulatedDevice(string options = "")
        {
            var own = Process.GetCurrentProcess().Id;
            Address = $"127.{own >> 8 & 0x7F | 0x80}.{own & 0xFF}.{++count % 254 + 1}";
            this.options = options;
            Start();
        }

        public string Address { get; }

        /// <summary>Acts on the device: "set VIDEO PROC AMP Gain 12", "drop".</summary>
        public void Command(string line)
        {
            process.StandardInput.WriteLine(line);
            process.StandardInput.Flush();
        }

        /// <summary>Switches the device off and on.</summary>
        public void Restart()
        {
            Dispose();
            Start();
        }

        public void Dispose()
        {
            process?.Kill();
            process?.WaitForExit();
            process?.Dispose();
            process = null;
        }

        private void Start()
        {
            process = Process.Start(new ProcessStartInfo
            {
                FileName = Environment.GetEnvironmentVariable("MORQUIL_SIM"),
                Arguments = $"--address {Address} {options}",
                UseShellExecute = false,
                RedirectStandardInput = true,
                RedirectStandardOutput = true,
            });
            var line = process.StandardOutput.ReadLine();
            Expect.True(line != null && line.StartsWith("listening on "), $"morquil-sim printed {line}");
            process.StandardOutput.ReadToEndAsync();  // so that it never waits for a reader
        }
    }
}
