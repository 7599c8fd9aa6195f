namespace Morquil
{
    /// <summary>What became of the changes of one call, in messages: changes to the same block that wait together are
    /// one.</summary>
    public struct Outcome
    {
        /// <summary>Messages that the device has accepted.</summary>
        public uint Acknowledged { get; internal set; }

        /// <summary>Messages that the device has refused.</summary>
        public uint Refused { get; internal set; }

        /// <summary>Messages that are never sent to a device.</summary>
        public uint Kept { get; internal set; }

        /// <summary>What the device has reported since, with the values that were set.</summary>
        public uint Confirmed { get; internal set; }

        /// <summary>What the device has reported since, with at least one other value.</summary>
        public uint Adjusted { get; internal set; }

        /// <summary>When the connection has ended: sent, and possibly carried out.</summary>
        public uint Unanswered { get; internal set; }

        /// <summary>When the connection has ended: not sent.</summary>
        public uint Unsent { get; internal set; }

        /// <summary>Whether the device reports exactly what was set. If not, it has limited or rounded a value, or the
        /// value was changed elsewhere since: read it.</summary>
        public bool IsApplied => Refused == 0 && Kept == 0 && Adjusted == 0 && Unanswered == 0 && Unsent == 0;

        /// <summary>For people.</summary>
        public override string ToString() =>
            $"{Acknowledged} acknowledged, {Refused} refused, {Kept} kept, {Confirmed} confirmed, " +
            $"{Adjusted} adjusted, {Unanswered} unanswered, {Unsent} unsent";
    }
}
