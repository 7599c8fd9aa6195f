using System;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using System.Threading;
using Morquil.Interop;

namespace Morquil.Tests
{
    /// <summary>How long everything lives.</summary>
    public static class LifetimeTests
    {
        [Test]
        public static void ADisposedDeviceLeavesNoReference()
        {
            using (var simulated = new SimulatedDevice())
            {
                var device = MorquilDevice.Connect(simulated.Address);
                device.Changed += (sender, change) => { };
                device.Values();
                var connection = (Connection)Field(device, "connection");
                var observers = new[] { "observer", "receiptObserver" }
                    .Select(name => (ComReference)Field(connection, name));
                var pointers = observers.Concat(new[] { connection.Device })
                    .Select(each => each.DangerousGetHandle()).ToList();
                pointers.ForEach(pointer => Marshal.AddRef(pointer));
                device.Dispose();
                pointers.ForEach(pointer => References.ExpectLast(pointer, "the device or an observer"));
            }
        }

        [Test]
        public static void ConnectionsLeaveNothing()
        {
            var count = TestRunner.IsLong ? 1000 : 100;
            using (var simulated = new SimulatedDevice())
            {
                for (var warmUp = 0; warmUp < 20; ++warmUp)
                {
                    ConnectAndUse(simulated.Address);
                }
                var before = Usage.Now();
                for (var cycle = 0; cycle < count; ++cycle)
                {
                    ConnectAndUse(simulated.Address);
                }
                Expect.Equal(0, OpenObjects.Count);
                // Threads of the pool come and go.
                Expect.Eventually(() => Usage.Now().Threads <= before.Threads + 8, "fewer threads");
                var after = Usage.Now();
                Expect.True(after.Files <= before.Files, $"{before.Files} files, then {after.Files}");
            }
        }

        [Test]
        public static void ADeviceThatNothingRefersToIsClosed()
        {
            using (var simulated = new SimulatedDevice())
            {
                Abandon(simulated.Address);
                Expect.Eventually(() =>
                {
                    GC.Collect();
                    GC.WaitForPendingFinalizers();
                    return OpenObjects.Count == 0;
                }, "the end of the connection");
            }
        }

        private static object Field(object owner, string name) =>
            owner.GetType().GetField(name, BindingFlags.Instance | BindingFlags.NonPublic).GetValue(owner);

        private static void ConnectAndUse(string address)
        {
            var device = MorquilDevice.Connect(address);
            device.Changed += (sender, change) => { };
            device.VideoProcAmp.GetGain();
            var pointer = device.Calls.Self.DangerousGetHandle();
            Marshal.AddRef(pointer);
            device.Dispose();
            References.ExpectLast(pointer, "the device");
        }

        /// <summary>On a thread of its own, whose stack is gone afterwards.</summary>
        private static void Abandon(string address)
        {
            var thread = new Thread(() =>
            {
                for (var count = 0; count < 3; ++count)
                {
                    MorquilDevice.Connect(address).Changed += (sender, change) => { };
                }
            });
            thread.Start();
            thread.Join();
        }

        private struct Usage
        {
            internal int Threads;
            internal int Files;

            internal static Usage Now() => new Usage
            {
                Threads = Directory.GetDirectories("/proc/self/task").Length,
                Files = Directory.GetFileSystemEntries("/proc/self/fd").Length,
            };
        }
    }
}
