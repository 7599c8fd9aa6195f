using System;
using System.Collections.Generic;

namespace Morquil
{
    /// <summary>The base of all exceptions here.</summary>
    public class MorquilException : Exception
    {
        internal MorquilException(string message, Exception inner = null) : base(message, inner)
        {
        }
    }

    /// <summary>The library itself cannot be loaded.</summary>
    public sealed class LibraryNotFoundException : MorquilException
    {
        internal LibraryNotFoundException(string message) : base(message)
        {
        }
    }

    /// <summary>A device that could not be connected.</summary>
    public sealed class ConnectException : MorquilException
    {
        internal ConnectException(string message, ConnectFailure reason) : base(message)
        {
            Reason = reason;
        }

        /// <summary>Why.</summary>
        public ConnectFailure Reason { get; }
    }

    /// <summary>The device has not reported the value: not yet, or this model never does.</summary>
    public sealed class NotKnownException : MorquilException
    {
        internal NotKnownException(string message) : base(message)
        {
        }
    }

    /// <summary>Not a value of the property: another type, outside its range, too long. Nothing was sent.</summary>
    public class InvalidValueException : MorquilException
    {
        internal InvalidValueException(string message, params object[] nearest) : base(message)
        {
            Nearest = nearest;
        }

        /// <summary>What would be accepted, the most similar first.</summary>
        public IReadOnlyList<object> Nearest { get; }
    }

    /// <summary>The device does not accept the value now; what it accepts depends on other settings. Nothing was
    /// sent.</summary>
    public sealed class NotOfferedException : InvalidValueException
    {
        internal NotOfferedException(string message, params object[] nearest) : base(message, nearest)
        {
        }
    }

    /// <summary>The property cannot be set.</summary>
    public sealed class ReadOnlyException : MorquilException
    {
        internal ReadOnlyException(string message) : base(message)
        {
        }
    }

    /// <summary>There is no property of this name.</summary>
    public sealed class NoSuchPropertyException : MorquilException
    {
        internal NoSuchPropertyException(string message, string nearest) : base(message)
        {
            Nearest = nearest;
        }

        /// <summary>The most similar name, or empty.</summary>
        public string Nearest { get; }
    }

    /// <summary>The device has refused the change; the values in it are as they were.</summary>
    public sealed class RefusedException : MorquilException
    {
        internal RefusedException(string message, Outcome outcome) : base(message)
        {
            Outcome = outcome;
        }

        /// <summary>What became of the change.</summary>
        public Outcome Outcome { get; }
    }

    /// <summary>The connection has ended.</summary>
    public sealed class LostException : MorquilException
    {
        internal LostException(string message, ConnectFailure reason, Outcome outcome) : base(message)
        {
            Reason = reason;
            Outcome = outcome;
        }

        /// <summary>Why.</summary>
        public ConnectFailure Reason { get; }

        /// <summary>How much of a change was sent.</summary>
        public Outcome Outcome { get; }
    }

    /// <summary>The time was up. A change may still be carried out.</summary>
    public sealed class TimedOutException : MorquilException
    {
        internal TimedOutException(string message) : base(message)
        {
        }
    }

    /// <summary>A call that waits for the library's thread was made on it, in a handler.</summary>
    public sealed class WouldDeadlockException : MorquilException
    {
        internal WouldDeadlockException(string message) : base(message)
        {
        }
    }
}
