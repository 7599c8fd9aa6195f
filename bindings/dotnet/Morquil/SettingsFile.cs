using System;
using System.IO;
using Morquil.Features;
using Morquil.Interop;

namespace Morquil.Features
{
    public sealed partial class DeviceCalls
    {
        // S_OK means that the file could not be opened.
        private const int Saved = Results.False;

        /// <summary>Whether the file was written.</summary>
        internal bool SaveSettingsFile(string path) =>
            CallWithPath("SaveSettingsFile", Slots.Device.SaveSettingsFile, path) == Saved;

        /// <summary>Queues the settings. The library reports nothing about an unreadable file.</summary>
        internal void LoadSettingsFile(string path) =>
            CallWithPath("LoadSettingsFile", Slots.Device.LoadSettingsFile, path);

        private int CallWithPath(string call, int slot, string path)
        {
            using (var text = new LibraryText(path))
            {
                var result = Function<CallText>(slot)(Self, text);
                CheckSetter(call, result);
                return result;
            }
        }
    }
}

namespace Morquil.Interop
{
    /// <summary>How a settings file is saved without risk to an existing one.</summary>
    internal static class SettingsFile
    {
        /// <summary>Saves into a temporary file in the same folder, which then replaces the old one.</summary>
        internal static void Save(DeviceCalls device, string path)
        {
            CheckState(device);
            var target = Path.GetFullPath(path);
            var temporary = Path.Combine(Path.GetDirectoryName(target), $".morquil-{Guid.NewGuid():N}.tmp");
            try
            {
                CheckWritable(target);
                if (!device.SaveSettingsFile(temporary))
                {
                    throw new MorquilException($"{path} cannot be written");
                }
                CheckState(device);
                Replace(temporary, target);
            }
            catch (Exception error) when (error is IOException || error is UnauthorizedAccessException)
            {
                throw new MorquilException($"{path} cannot be written: {error.Message}", error);
            }
            finally
            {
                File.Delete(temporary);
            }
        }

        /// <summary>A read-only file could be replaced, but must not be.</summary>
        private static void CheckWritable(string path)
        {
            if (File.Exists(path))
            {
                File.Open(path, FileMode.Open, FileAccess.Write).Dispose();
            }
        }

        private static void Replace(string temporary, string target)
        {
            if (File.Exists(target))
            {
                File.Replace(temporary, target, null);
            }
            else
            {
                File.Move(temporary, target);
            }
        }

        /// <summary>While a device is connected, at least one of the values that every device reports is
        /// known.</summary>
        private static void CheckState(DeviceCalls device)
        {
            foreach (var getter in new Func<object>[]
                     {
                         device.GetDeviceName, () => device.GetSoftwareVersion(), () => device.GetPanelLock(),
                     })
            {
                try
                {
                    getter();
                    return;
                }
                catch (NotKnownException)
                {
                }
            }
            throw new NotKnownException("the device has not reported its complete state");
        }
    }
}
