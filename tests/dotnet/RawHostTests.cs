using System;
using System.Collections.Generic;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using System.Threading;
using Morquil.Interop;

namespace Morquil.Tests
{
    /// <summary>A host that uses the interfaces of MorquilAPI.cs themselves, through the runtime's COM
    /// support.</summary>
    public static class RawHostTests
    {
        /// <summary>Methods whose good result is not S_OK, or that fail for zeros.</summary>
        private static readonly Dictionary<string, int> OtherResults = new Dictionary<string, int>
        {
            { "SaveSettingsFile", Results.False },
            { "LoadSettingsFile", Results.False },
            { "IsGenRefAvailable", Results.Fail },
            { "RemoveConnectionObserver", Results.False },
            { "RemovePropertyObserver", Results.False },
        };

        [Test]
        public static void EveryMethodOfEveryInterfaceIsCalledOnce()
        {
            using (var simulated = new SimulatedDevice())
            using (var host = new RawHost(simulated.Address))
            {
                var called = 0;
                foreach (var type in typeof(IMorquilDevice).Assembly.GetExportedTypes().Where(IsFeature))
                {
                    foreach (var method in type.GetMethods().OrderBy(method => method.MetadataToken))
                    {
                        var result = (int)method.Invoke(host.Device, ArgumentsOf(method));
                        var expected = OtherResults.TryGetValue(method.Name, out var other) ? other : Results.Ok;
                        Expect.Equal(expected, result, $"{type.Name}.{method.Name}");
                        ++called;
                    }
                }
                var defined = new IdlReader().Interfaces.Where(each => !NotOfADevice.Contains(each.Key));
                Expect.Equal(defined.Sum(each => each.Value.Methods.Count), called);
            }
        }

        [Test]
        public static void EveryGetterAnswersAsThatOfTheLayerDoes()
        {
            using (var simulated = new SimulatedDevice())
            using (var host = new RawHost(simulated.Address))
            using (var device = MorquilDevice.Connect(simulated.Address))
            {
                MakeNumbersDifferent(device);
                var compared = 0;
                foreach (var type in typeof(IMorquilDevice).Assembly.GetExportedTypes().Where(IsFeature))
                {
                    var feature = FeatureOf(device, type);
                    var getters = type.GetMethods().Where(method => method.GetParameters().All(each => each.IsOut));
                    foreach (var method in getters)
                    {
                        var answers = new object[method.GetParameters().Length];
                        if ((int)method.Invoke(host.Device, answers) == Results.Ok && answers.Length > 0)
                        {
                            var own = feature.GetType().GetMethod(method.Name, Type.EmptyTypes).Invoke(feature, null);
                            var expected = own is bool ? new object[] { !Equals(0, answers[0]) } : answers;
                            Expect.Sequence(expected, EndsOf(own), $"{type.Name}.{method.Name}");
                            ++compared;
                        }
                    }
                }
                Expect.True(compared > 130, $"{compared} getters");
            }
        }

        [Test]
        public static void ObserversAreCalledAndLinesAreRead()
        {
            using (var simulated = new SimulatedDevice())
            using (var host = new RawHost(simulated.Address))
            {
                host.Device.AddPropertyObserver(host.Observer, PropertySet.NetworkConfig);
                simulated.Command("set NETWORK CONFIG Friendly name Überwachung");
                Expect.True(host.Observer.Changed.WaitOne(Expect.Soon), "no notice");
                Expect.Equal(PropertySet.NetworkConfig, host.Observer.Set);
                host.Device.RemovePropertyObserver(host.Observer, PropertySet.NetworkConfig);
            }
        }

        [Test]
        public static void AThousandConnectionsLeaveNoReference()
        {
            using (var simulated = new SimulatedDevice())
            {
                for (var cycle = 0; cycle < 1000; ++cycle)
                {
                    var host = new RawHost(simulated.Address);
                    host.Device.AddPropertyObserver(host.Observer, PropertySet.VideoProcAmp);
                    Expect.Equal(0, ((IMorquilVideoProcAmp)host.Device).GetGain(out _), "GetGain");
                    host.Device.RemovePropertyObserver(host.Observer, PropertySet.VideoProcAmp);
                    host.Dispose();  // which counts
                }
            }
        }

        internal static readonly string[] NotOfADevice =
        {
            "IMorquilAlign", "IMorquilIterator", "IMorquilDiscovery", "IMorquilDelivery", "IMorquilConsole",
            "IMorquilConsoleObserver", "IMorquilConnectionObserver", "IMorquilPropertyObserver",
            "IMorquilReportObserver", "IMorquilReceiptObserver",
        };

        private static bool IsFeature(Type type) => type.IsInterface && !NotOfADevice.Contains(type.Name);

        private static object FeatureOf(MorquilDevice device, Type type)
        {
            var name = type.Name.Substring("IMorquil".Length).Replace("3dMode", "Mode3d");
            return typeof(MorquilDevice).GetProperty(name == "Device" ? "Calls" : name).GetValue(device);
        }

        /// <summary>Both ends of a range, or the one value.</summary>
        private static object[] EndsOf(object value) =>
            value.GetType().IsGenericType
                ? new[] { "Min", "Max" }.Select(end => value.GetType().GetProperty(end).GetValue(value)).ToArray()
                : new[] { value };

        /// <summary>So that no getter can be taken for another.</summary>
        private static void MakeNumbersDifferent(MorquilDevice device)
        {
            var number = 1;
            foreach (var row in Property.All.Where(row => row.ValueType == typeof(int) && row.IsReadable))
            {
                if (row.IsWritable && device.Offered(row.Name) is Offer offer)
                {
                    device.Set(row.Name, (int)offer.Min + number++ % ((int)offer.Max - (int)offer.Min));
                }
            }
            Expect.True(number > 15, $"{number} numbers");
        }

        /// <summary>Zeros, and what has a meaning in its place.</summary>
        private static object[] ArgumentsOf(MethodInfo method) => method.GetParameters().Select(parameter =>
        {
            var type = parameter.ParameterType;
            switch (parameter.Name)
            {
                case "observer":
                    return new RawObserver();
                case "propertySet":
                    return PropertySet.VideoProcAmp;
                case "frameHeight":
                    return 1080u;
                case "preset":
                    return method.Name.EndsWith("PresetName") ? 0 : 1;
                case "path":
                    return "/dev/null";
            }
            return type == typeof(string) ? "text" : type.IsByRef ? null : Activator.CreateInstance(type);
        }).ToArray();
    }

    /// <summary>Counts what it is called with.</summary>
    public sealed class RawObserver : IMorquilConnectionObserver, IMorquilPropertyObserver
    {
        public readonly ManualResetEvent IsConnected = new ManualResetEvent(false);
        public readonly AutoResetEvent Changed = new AutoResetEvent(false);

        public PropertySet Set { get; private set; }

        public int Connected()
        {
            IsConnected.Set();
            return 0;
        }

        public int Disconnected(ConnectFailure reason) => 0;

        public int PropertyChanged(PropertySet id)
        {
            Set = id;
            Changed.Set();
            return 0;
        }
    }

    /// <summary>A connected device, as a host without the layer has it.</summary>
    public sealed class RawHost : IDisposable
    {
        private static readonly IMorquilDiscovery Discovery =
            (IMorquilDiscovery)Marshal.GetObjectForIUnknown(Library.Current.Discovery.DangerousGetHandle());

        public RawHost(string address)
        {
            Expect.Equal(0, Discovery.ConnectAsync(address, out var device, Observer), "ConnectAsync");
            Device = device;
            Expect.True(Observer.IsConnected.WaitOne(Expect.Soon), "not connected");
        }

        public IMorquilDevice Device { get; }

        public RawObserver Observer { get; } = new RawObserver();

        public void Dispose()
        {
            var device = Marshal.GetIUnknownForObject(Device);
            var observer = Marshal.GetComInterfaceForObject(Observer, typeof(IMorquilConnectionObserver));
            Discovery.Disconnect(Device);
            Device.RemoveConnectionObserver(Observer);
            Marshal.FinalReleaseComObject(Device);
            References.ExpectLast(device, "the device");
            References.ExpectLast(observer, "the observer");
        }
    }
}
