using System;

namespace Morquil
{
    /// <summary>A property has another value than before.</summary>
    public sealed class ChangedEventArgs : EventArgs
    {
        internal ChangedEventArgs(string name, object old, object @new, bool isEcho)
        {
            Name = name;
            Old = old;
            New = @new;
            IsEcho = isEcho;
        }

        /// <summary>"proc-amp.gain".</summary>
        public string Name { get; }

        /// <summary>The value before; null if it was not known.</summary>
        public object Old { get; }

        /// <summary>The value now; null if it is not known.</summary>
        public object New { get; }

        /// <summary>Whether the device repeats exactly what this connection has set.</summary>
        public bool IsEcho { get; }

        /// <summary>"proc-amp.gain: 0, now 12".</summary>
        public override string ToString() => $"{Name}: {Words.ToText(Old)}, now {Words.ToText(New)}";
    }

    /// <summary>A connection has ended without being closed.</summary>
    public sealed class LostEventArgs : EventArgs
    {
        internal LostEventArgs(LostException error)
        {
            Error = error;
        }

        /// <summary>Why.</summary>
        public LostException Error { get; }
    }
}
