using System;
using System.Collections.Generic;
using System.Diagnostics;
using System.Linq;
using System.Threading;

namespace Morquil.Tests
{
    /// <summary>States in which a program may end.</summary>
    public static class Endings
    {
        public static readonly Dictionary<string, Action<string>> All = new Dictionary<string, Action<string>>
        {
            { "connection", address => MorquilDevice.Connect(address) },
            { "handler", address => MorquilDevice.Connect(address).Changed += (sender, change) => { } },
            { "running-handler", EndInHandler },
            { "attempt", address => MorquilDevice.ConnectAsync("127.250.250.250") },
            { "session", address => Begin(address).Wait(Expect.Soon) },
            { "waiting-session", address => Begin("127.250.250.250") },
            { "waiting-thread", address => new Thread(WaitForNothing) { IsBackground = true }.Start() },
            { "output", EndWithOutput },
            { Throwing, EndInThrowingHandler },
        };

        private const string Throwing = "throwing-handler";

        [Test]
        public static void AProgramMayEndInEveryState()
        {
            foreach (var options in new[] { "", "--flood" })
            {
                foreach (var state in All.Keys.Where(each => each != Throwing))
                {
                    using (var simulated = new SimulatedDevice(options))
                    {
                        var errors = ErrorsOf(state, simulated.Address, out var status);
                        Expect.True(status == 0 && errors == "", $"{state} {options}: {status}, {errors}");
                    }
                }
            }
        }

        [Test]
        public static void AnExceptionInAHandlerEndsTheProgram()
        {
            using (var simulated = new SimulatedDevice())
            {
                var errors = ErrorsOf(Throwing, simulated.Address, out var status);
                Expect.True(status != 0 && errors.Contains("thrown by a handler"), $"{status}, {errors}");
            }
        }

        private static string ErrorsOf(string state, string address, out int status)
        {
            using (var process = Process.Start(new ProcessStartInfo
            {
                FileName = "mono",
                Arguments = $"{typeof(Endings).Assembly.Location} {state} {address}",
                UseShellExecute = false,
                RedirectStandardError = true,
            }))
            {
                var errors = process.StandardError.ReadToEnd();
                process.WaitForExit();
                status = process.ExitCode;
                return errors;
            }
        }

        private static Session Begin(string address)
        {
            var session = new Session(address);
            session.Start();
            return session;
        }

        private static void WaitForNothing()
        {
            try
            {
                Begin("127.250.250.250").Wait(Expect.Soon);
            }
            catch (LostException)
            {
                // The end of the program has ended the session.
            }
        }

        private static void EndInHandler(string address)
        {
            var isRunning = new ManualResetEventSlim();
            var device = MorquilDevice.Connect(address);
            device.Changed += (sender, change) =>
            {
                isRunning.Set();
                Thread.Sleep(100);  // so that the end comes meanwhile
            };
            device.SetAsync("proc-amp.gain", 5);
            isRunning.Wait(Expect.Soon);
        }

        private static void EndInThrowingHandler(string address)
        {
            var device = MorquilDevice.Connect(address);
            device.Changed += (sender, change) => throw new InvalidOperationException("thrown by a handler");
            device.Set("proc-amp.gain", 5);
            Thread.Sleep(Expect.Soon);  // which the exception ends
        }

        private static void EndWithOutput(string address)
        {
            MorquilLibrary.SetOutput(line => { });
            MorquilDevice.Connect(address);
        }
    }
}
