using System;
using System.Collections.Generic;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Threading;
using System.Threading.Tasks;
using Morquil.Features;
using Morquil.Interop;

namespace Morquil.Tests
{
    /// <summary>A device: connecting, setting, waiting, the end.</summary>
    public static class DeviceTests
    {
        [Test]
        public static void EveryMethodOfEveryFeatureIsCalledOnce() => WithDevice((device, simulated) =>
        {
            var called = new List<string>();
            var types = typeof(Feature).Assembly.GetExportedTypes();
            foreach (var type in types.Where(type => type.BaseType == typeof(Feature)))
            {
                var property = type == typeof(DeviceCalls) ? "Calls" : type.Name;
                var feature = typeof(MorquilDevice).GetProperty(property).GetValue(device);
                var methods = type.GetMethods(BindingFlags.Public | BindingFlags.Instance | BindingFlags.DeclaredOnly);
                foreach (var method in methods)
                {
                    method.Invoke(feature, method.GetParameters().Select(Argument).ToArray());
                    called.Add($"{type.Name.Replace("DeviceCalls", "Device")}.{method.Name}");
                }
            }
            var defined = from each in new IdlReader().Interfaces
                          where !RawHostTests.NotOfADevice.Contains(each.Key)
                          from method in each.Value.Methods.Select(NameOf)
                          where !ByHand.Contains(method)
                          select $"{each.Key.Substring("IMorquil".Length).Replace("3dMode", "Mode3d")}.{method}";
            Expect.Sequence(defined.OrderBy(name => name), called.OrderBy(name => name));
        });

        [Test]
        public static void ASetReturnsWhenTheDeviceHasConfirmedIt() => WithDevice((device, simulated) =>
        {
            var outcome = device.Set("proc-amp.gain", 12);
            Expect.True(outcome.IsApplied && outcome.Confirmed == 1, outcome.ToString());
            Expect.Equal(12, device.VideoProcAmp.GetGain());
        });

        [Test]
        public static void AnAwaitedSetIsConfirmed() => WithDevice((device, simulated) =>
        {
            Expect.True(device.SetAsync("output.video-mode", "1080p50").Result.IsApplied, "not applied");
            Expect.Equal(VideoMode.Mode1080p50, device.OutputConfiguration.GetVideoMode());
            Expect.True(device.SetAsync("output.video-mode", VideoMode.Mode1080i50).Result.IsApplied, "not applied");
        });

        [Test]
        public static void SettersOfOneActionAreConfirmedTogether() => WithDevice((device, simulated) =>
        {
            var outcome = device.Apply(() =>
            {
                device.VideoProcAmp.SetGain(5);
                device.OutputConfiguration.SetVideoMode(VideoMode.Mode1080p50);
            });
            Expect.Equal(2u, outcome.Confirmed);
            Expect.Throws<DivideByZeroException>(() => device.Apply(() => throw new DivideByZeroException()));
        });

        [Test]
        public static void SeveralPropertiesAreSetAtOnceOrNotAtAll() => WithDevice((device, simulated) =>
        {
            var good = new Dictionary<string, object> { { "proc-amp.gain", 5 }, { "proc-amp.hue", 6 } };
            Expect.True(device.Update(good).IsApplied, "not applied");
            var bad = new Dictionary<string, object> { { "proc-amp.gain", 7 }, { "proc-amp.hue", 999 } };
            Expect.Throws<InvalidValueException>(() => device.UpdateAsync(bad).Wait());
            Expect.Equal(5, device.Get("proc-amp.gain"));
        });

        [Test]
        public static void ARefusalSaysHowMuchWasRefused() => WithDevice((device, simulated) =>
        {
            var error = Expect.Throws<RefusedException>(
                () => device.Apply(() => device.VideoProcAmp.SetGain(999)), "the device has refused 1 of 1 messages");
            Expect.Equal(1u, error.Outcome.Refused);
            Expect.True(!error.Outcome.IsApplied, "applied");
        });

        [Test]
        public static void AnUnansweredChangeTimesOut() => WithDevice((device, simulated) =>
        {
            BeUnanswering(device, simulated);
            device.Timeout = TimeSpan.FromMilliseconds(50);
            Expect.Throws<TimedOutException>(
                () => device.Set("proc-amp.gain", 1), "the device has not answered within 0.05 s");
            Expect.Throws<TimedOutException>(() => device.SetAsync("proc-amp.gain", 2).Wait());
        });

        [Test]
        public static void AWaitCanBeCancelled() => WithDevice((device, simulated) =>
        {
            BeUnanswering(device, simulated);
            using (var cancelling = new CancellationTokenSource())
            {
                var setting = device.SetAsync("proc-amp.gain", 1, cancelling.Token);
                cancelling.Cancel();
                Expect.Throws<OperationCanceledException>(() => setting.GetAwaiter().GetResult());
            }
        });

        [Test]
        public static void ACancelledSetSendsNothing() => WithDevice((device, simulated) =>
        {
            var setting = device.SetAsync("proc-amp.gain", 5, new CancellationToken(true));
            Expect.Throws<OperationCanceledException>(() => setting.GetAwaiter().GetResult());
            device.Set("proc-amp.hue", 3);
            Expect.Equal(0, device.Get("proc-amp.gain"));
        });

        [Test]
        public static void ALossEndsAWait() => WithDevice((device, simulated) =>
        {
            BeUnanswering(device, simulated);
            var setting = device.SetAsync("proc-amp.gain", 1);
            simulated.Command("drop");
            var error = Expect.Throws<LostException>(setting.Wait, "the connection has ended");
            Expect.Equal(1u, error.Outcome.Unanswered + error.Outcome.Unsent);
            Expect.Eventually(() => !device.IsConnected, "the end of the connection");
            Expect.Throws<LostException>(() => device.Get("proc-amp.gain"));
            Expect.Throws<LostException>(() => device.Set("proc-amp.gain", 1));
            Expect.Throws<LostException>(() => Expect.True(device.Silence.Ticks < 0, "no exception"));
        });

        [Test]
        public static void ADisposedDeviceSaysSo()
        {
            using (var simulated = new SimulatedDevice())
            {
                var device = MorquilDevice.Connect(simulated.Address);
                Expect.Equal($"{simulated.Address}, connected", device.ToString());
                Expect.True(device.Silence < TimeSpan.FromSeconds(20), "silent");
                var amp = device.VideoProcAmp;
                device.Dispose();
                device.Dispose();
                Expect.Equal($"{simulated.Address}, not connected", device.ToString());
                Expect.Throws<ObjectDisposedException>(() => amp.GetGain());
                Expect.Throws<ObjectDisposedException>(() => device.Get("color.red"));
                Expect.Throws<LostException>(() => device.Set("proc-amp.gain", 1), "the connection was closed");
                Expect.Throws<LostException>(() => device.Changed += (sender, e) => { });
            }
        }

        [Test]
        public static void AnAttemptFailsWithItsReason()
        {
            var missing = Expect.Throws<ConnectException>(
                () => MorquilDevice.Connect("127.250.250.250"), "127.250.250.250: no answer from a device");
            Expect.Equal(ConnectFailure.NoResponse, missing.Reason);
            using (var locked = new SimulatedDevice("--remote-lock"))
            {
                var error = Expect.Throws<ConnectException>(() => MorquilDevice.ConnectAsync(locked.Address).Wait());
                Expect.Equal(ConnectFailure.RemoteLock, error.Reason);
            }
            Expect.Throws<InvalidValueException>(() => MorquilDevice.Connect("two\nlines"));
        }

        [Test]
        public static void AnAttemptCanHaveALimit()
        {
            using (var silent = new SimulatedDevice("--silent"))
            using (var cancelling = new CancellationTokenSource())
            {
                var limit = TimeSpan.FromMilliseconds(50);
                Expect.Throws<TimedOutException>(() => MorquilDevice.Connect(silent.Address, limit));
                var connecting = MorquilDevice.ConnectAsync(silent.Address, cancelling.Token);
                cancelling.Cancel();
                Expect.Throws<OperationCanceledException>(() => connecting.GetAwaiter().GetResult());
            }
        }

        [Test]
        public static void ThreadsMayDisposeOfADeviceAtOnce()
        {
            using (var simulated = new SimulatedDevice())
            {
                for (var round = 0; round < 20; ++round)
                {
                    var device = MorquilDevice.Connect(simulated.Address);
                    Parallel.For(0, 4, _ => device.Dispose());
                    Expect.True(!device.IsConnected, "connected");
                }
            }
        }

        [Test]
        public static void SettingsAreSavedAndLoaded() => WithDevice((device, simulated) =>
        {
            var folder = Path.Combine(Path.GetTempPath(), Guid.NewGuid().ToString());
            Directory.CreateDirectory(folder);
            try
            {
                var path = Path.Combine(folder, "settings.txt");
                device.Set("proc-amp.gain", 21);
                device.SaveSettings(path);
                device.Set("proc-amp.gain", 0);
                Expect.True(device.LoadSettingsAsync(path).Result.Acknowledged > 5, "not loaded");
                Expect.Eventually(() => device.Get<int>("proc-amp.gain") == 21, "the gain of the file");
                Expect.True(device.LoadSettings(path).Acknowledged > 5, "not loaded");
                device.SaveSettings(path);
                Expect.Sequence(new[] { path }, Directory.GetFiles(folder));
                var missing = Path.Combine(folder, "missing");
                var unwritable = Path.Combine(missing, "settings.txt");
                Expect.Throws<MorquilException>(() => device.SaveSettings(unwritable), "cannot be written");
                Expect.Throws<FileNotFoundException>(() => device.LoadSettingsAsync(missing).Wait());
            }
            finally
            {
                Directory.Delete(folder, true);
            }
        });

        [Test]
        public static void WhatTheLibraryPrintsGoesToAHandler() => WithDevice((device, simulated) =>
        {
            var line = new TaskCompletionSource<string>();
            MorquilLibrary.SetOutput(text => line.TrySetResult(text));
            simulated.Command("set VIDEO PROC AMP Gain 3");
            Expect.True(line.Task.Wait(Expect.Soon), "no line");
            MorquilLibrary.Silence();
        });

        internal static void WithDevice(Action<MorquilDevice, SimulatedDevice> test)
        {
            using (var simulated = new SimulatedDevice())
            using (var device = MorquilDevice.Connect(simulated.Address))
            {
                test(device, simulated);
            }
        }

        /// <summary>From here on the device acknowledges nothing.</summary>
        private static void BeUnanswering(MorquilDevice device, SimulatedDevice simulated)
        {
            simulated.Command("ack off");
            simulated.Command("set VIDEO PROC AMP Hue 5");
            // So the command before it has been carried out, too.
            Expect.Eventually(() => device.Get<int>("proc-amp.hue") == 5, "the new hue");
        }

        private static readonly string[] ByHand =
        {
            "AddConnectionObserver", "RemoveConnectionObserver", "AddPropertyObserver", "RemovePropertyObserver",
            "SaveSettingsFile", "LoadSettingsFile",
        };

        /// <summary>Of a method as it is defined.</summary>
        private static string NameOf(string method) => method.Substring(0, method.IndexOf('(')).Split(' ')[1];

        private static object Argument(ParameterInfo parameter)
        {
            if (parameter.Name == "frameHeight")
            {
                return 1080u;
            }
            var type = parameter.ParameterType;
            if (type == typeof(int) && parameter.Name == "preset")
            {
                return parameter.Member.Name.EndsWith("PresetName") ? 0 : 1;
            }
            return type == typeof(string) ? "text" : Activator.CreateInstance(type);
        }
    }
}
