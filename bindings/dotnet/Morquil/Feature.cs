using System;
using Morquil.Interop;

namespace Morquil.Features
{
    /// <summary>An interface of a device. It keeps its device, and is usable until that is disposed of.</summary>
    public abstract class Feature
    {
        private readonly MorquilDevice device;

        internal Feature(ComReference self, MorquilDevice device)
        {
            Self = self;
            this.device = device;
        }

        internal ComReference Self { get; }

        internal T Function<T>(int slot) where T : class => Self.Function<T>(slot);

        internal void CheckGetter(string call, int result)
        {
            if (result < 0)
            {
                throw result == Results.Fail ? Missing(call) : Results.Failure(call, result);
            }
        }

        internal static void CheckSetter(string call, int result) => Results.Check(call, result);

        /// <summary>The method answers through its flag; its result means nothing.</summary>
        internal static void CheckFlag(string call, int result) =>
            Results.Check(call, result == Results.Fail ? 0 : result);

        private Exception Missing(string call) =>
            device.IsConnected
                ? (Exception)new NotKnownException($"{call}: the device has not reported the value") : device.Loss();
    }
}
