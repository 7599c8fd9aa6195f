#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>

#include "MorquilAPI.h"
#include "core/lock.h"
#include "core/lockable.h"
#include "core/thread_safety.h"
#include "features/feature_base.h"
#include "platform/text.h"
#include "protocol/block_table.h"
#include "protocol/table/block.h"
#include "protocol/table/message.h"
#include "protocol/text/cut_detector.h"
#include "transport/message_queue.h"

namespace Morquil {

/// In place of the availability block, for a feature that has none.
struct NoAvailability {};

enum class AvailabilityChange { Notify, Silent };

/// One feature of the device: a COM interface to its own copies of a settings block and an availability block.
///
/// The host's threads read the copies and queue messages; the connection thread keeps the copies up to date. The
/// device's answer, not the setter, updates the copy. References to the interface are counted by the device that owns
/// the object.
///
/// A derived class needs one line per interface method; each rule for reading, checking and sending is written once,
/// here.
template <class Interface, class Set, class AvailabilityDescription = NoAvailability>
class Feature : public Interface, public FeatureBase {
    using AvailabilitySet = ChangeSetOf<AvailabilityDescription>;

public:
    using ComInterface = Interface;
    using SettingsBlock = Set;
    using AvailabilityBlock = AvailabilityDescription;
    static constexpr bool hasAvailability = !std::is_same_v<AvailabilityDescription, NoAvailability>;

    /// `owner` counts the references, `queue` accepts the messages; both must outlive the object.
    Feature(IUnknown& owner, IMessageQueue& queue, REFIID iid, _MorquilPropertySetId propertySet,
            AvailabilityChange availabilityChange = AvailabilityChange::Notify)
        : FeatureBase(iid, propertySet, {placeOf<Set>, placeOf<AvailabilityDescription>}),
          owner_(owner),
          queue_(queue),
          availabilityChange_(availabilityChange) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** out) override { return owner_.QueryInterface(iid, out); }
    STDMETHODIMP_(ULONG) AddRef() override { return owner_.AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return owner_.Release(); }

    /// Merges a received block. Notifies the observers if `notify` is set and one of this feature's values has changed.
    void ApplyChangeSet(const Set& incoming, bool notify) {
        bool changed = false;
        {
            QRN::Core::Lock lock(mirrorLock_);
            changed = MergeSettings(settings_, incoming);
            settingsReceived_ = true;
        }
        if (changed && notify) {
            NotifyObservers();
        }
    }

    void ApplyAvailabilityChangeSet(const AvailabilitySet& incoming) {
        bool changed = false;
        {
            QRN::Core::Lock lock(mirrorLock_);
            changed = MergeAvailability(availability_, incoming);
            availabilityReceived_ = true;
        }
        if (changed && availabilityChange_ == AvailabilityChange::Notify) {
            NotifyObservers();
        }
    }

    void ApplySettings(AnyBlock block, bool notify) override {
        ApplyChangeSet(*static_cast<const Set*>(block.changeSet), notify);
    }
    void ApplyAvailability(AnyBlock block) override {
        ApplyAvailabilityChangeSet(*static_cast<const AvailabilitySet*>(block.changeSet));
    }

    IUnknown* AsUnknown() override { return static_cast<Interface*>(this); }

    bool IsCacheComplete() const override {
        QRN::Core::Lock lock(mirrorLock_);
        return settingsReceived_ && HasAllNeeded(settings_) && HasAllAvailability();
    }

    void ClearCache() override {
        QRN::Core::Lock lock(mirrorLock_);
        Clear(settings_);
        Clear(availability_);
        settingsReceived_ = availabilityReceived_ = false;
    }

    std::string GetSettingsText() const override {
        Set settings = CopySettings();
        ClearWhatWouldBeCut(settings);
        return BlockText<Set>(settings);
    }

protected:
    /// Merges `incoming` into `copy`. Returns whether to notify the observers.
    virtual bool MergeSettings(Set& copy, const Set& incoming) { return Merge(copy, incoming); }
    virtual bool MergeAvailability(AvailabilitySet& copy, const AvailabilitySet& incoming) {
        if constexpr (hasAvailability) {
            return Merge(copy, incoming);
        } else {
            return false;
        }
    }

    /// Merges the whole of a block that several features share. Returns whether one of the named members changed.
    template <class SharedSet, class... Members>
    static bool MergeShared(SharedSet& copy, const SharedSet& incoming, Members... ownMembers) {
        const bool ownChanged = MergeMembers(copy, incoming, ownMembers...);
        Merge(copy, incoming);
        return ownChanged;
    }

    Set CopySettings() const {
        QRN::Core::Lock lock(mirrorLock_);
        return settings_;
    }

    // Getters. E_POINTER for a null out-pointer, E_FAIL while the value is unknown; nothing is written in either case.

    template <class Out, class Owner, class FieldType>
    HRESULT Read(Out* out, FieldType Owner::*member) const {
        if (out == nullptr) {
            return E_POINTER;
        }
        QRN::Core::Lock lock(mirrorLock_);
        return Give(out, settings_.*member);
    }

    template <class Out, class Owner, class FieldType, std::size_t count>
    HRESULT ReadElement(Out* out, std::array<FieldType, count> Owner::*member, std::size_t index) const {
        if (out == nullptr) {
            return E_POINTER;
        }
        if (index >= count) {
            return E_INVALIDARG;
        }
        QRN::Core::Lock lock(mirrorLock_);
        return Give(out, (settings_.*member)[index]);
    }

    /// Ownership: the caller frees the new text. E_FAIL also when it could not be allocated; `*out` is then null.
    template <class Owner, class TextFieldType>
    HRESULT ReadText(BSTR* out, TextFieldType Owner::*member) const {
        if (out == nullptr) {
            return E_POINTER;
        }
        QRN::Core::Lock lock(mirrorLock_);
        return GiveText(out, settings_.*member);
    }

    /// One text of an array; E_FAIL for an index outside it.
    template <class Owner, class TextFieldType, std::size_t count>
    HRESULT ReadTextElement(BSTR* out, std::array<TextFieldType, count> Owner::*member, std::size_t index) const {
        if (out == nullptr) {
            return E_POINTER;
        }
        QRN::Core::Lock lock(mirrorLock_);
        return index < count ? GiveText(out, (settings_.*member)[index]) : E_FAIL;
    }

    template <class Out, class Owner, class Limit>
    HRESULT ReadRange(Out* min, Out* max, Field<Range<Limit>> Owner::*member) const {
        if (min == nullptr || max == nullptr) {
            return E_POINTER;
        }
        QRN::Core::Lock lock(mirrorLock_);
        return GiveRange(min, max, availability_.*member);
    }

    /// One range of an array; E_FAIL for an index outside it.
    template <class Out, class Owner, class Limit, std::size_t count>
    HRESULT ReadRange(Out* min, Out* max, std::array<Field<Range<Limit>>, count> Owner::*member,
                      std::size_t index) const {
        if (min == nullptr || max == nullptr) {
            return E_POINTER;
        }
        QRN::Core::Lock lock(mirrorLock_);
        return index < count ? GiveRange(min, max, (availability_.*member)[index]) : E_FAIL;
    }

    // Availability. Until the device has reported it, every query answers 0 with S_OK.

    /// E_INVALIDARG for a value at or above the number of words, E_POINTER for a null out-pointer.
    template <class Vocabulary, class Owner, class Value>
    HRESULT QueryList(SetField<Vocabulary> Owner::*member, Value value, LONG* isAvailable) const {
        if (IsOutOfBounds<Vocabulary>(value)) {
            return E_INVALIDARG;
        }
        if (isAvailable == nullptr) {
            return E_POINTER;
        }
        QRN::Core::Lock lock(mirrorLock_);
        *isAvailable = (availability_.*member).Has(IndexOf(value)) ? 1 : 0;
        return S_OK;
    }

    /// One list of an array, selected by `which`; both indices are bounded alike.
    template <class Vocabulary, class Owner, std::size_t count, class Which, class Value>
    HRESULT QueryList(std::array<SetField<Vocabulary>, count> Owner::*member, Which which, Value value,
                      LONG* isAvailable) const {
        if (static_cast<std::int32_t>(which) >= static_cast<std::int32_t>(count) || IsOutOfBounds<Vocabulary>(value)) {
            return E_INVALIDARG;
        }
        if (isAvailable == nullptr) {
            return E_POINTER;
        }
        QRN::Core::Lock lock(mirrorLock_);
        *isAvailable = IndexOf(which) < count && (availability_.*member)[IndexOf(which)].Has(IndexOf(value)) ? 1 : 0;
        return S_OK;
    }

    template <class Owner>
    HRESULT QueryFlag(Field<bool> Owner::*member, LONG* isAvailable) const {
        if (isAvailable == nullptr) {
            return E_POINTER;
        }
        QRN::Core::Lock lock(mirrorLock_);
        const Field<bool>& flag = availability_.*member;
        *isAvailable = flag.IsPresent() && flag.Get() ? 1 : 0;
        return S_OK;
    }

    // Setters. Each queues a message with only what it changes and leaves the copy as it is.
    // They return E_INVALIDARG as each one says, E_OUTOFMEMORY, or the result of the queue.

    /// Sends any value: a number, or an enumeration whose values are not checked.
    template <class Owner, class FieldType, class Value>
    HRESULT Send(FieldType Owner::*member, Value value) {
        return QueueMessage([&](Set& set) {
            (set.*member).Set(static_cast<typename FieldType::Value>(value));
            return S_OK;
        });
    }

    /// Anything but 0 is true.
    template <class Owner>
    HRESULT SendYesNo(Field<bool> Owner::*member, LONG value) {
        return Send(member, value != 0);
    }

    /// E_INVALIDARG for a value at or above the number of words. A negative one is accepted and writes no line.
    template <class Vocabulary, class Owner, class FieldType, class Value>
    HRESULT SendWord(FieldType Owner::*member, Value value) {
        return IsOutOfBounds<Vocabulary>(value) ? E_INVALIDARG : Send(member, value);
    }

    /// E_INVALIDARG for an index outside the array.
    template <class Owner, class FieldType, std::size_t count, class Value>
    HRESULT SendElement(std::array<FieldType, count> Owner::*member, std::size_t index, Value value) {
        if (index >= count) {
            return E_INVALIDARG;
        }
        return QueueMessage([&](Set& set) {
            (set.*member)[index].Set(static_cast<typename FieldType::Value>(value));
            return S_OK;
        });
    }

    /// Sends one value to every element, in one message.
    template <class Owner, class FieldType, std::size_t count, class Value>
    HRESULT SendAllElements(std::array<FieldType, count> Owner::*member, Value value) {
        return QueueMessage([&](Set& set) {
            for (FieldType& element : set.*member) {
                element.Set(static_cast<typename FieldType::Value>(value));
            }
            return S_OK;
        });
    }

    /// E_INVALIDARG for a number so large that its line would be cut and lose its line feed.
    template <class Owner>
    HRESULT SendDecimal(Field<double> Owner::*member, double value) {
        return QueueMessage([&](Set& set) {
            (set.*member).Set(value);
            CutDetector detector;
            WriteBlock<Set>(detector, set);
            return detector.HasCut() ? E_INVALIDARG : S_OK;
        });
    }

    /// Sends text, cut at its end to less than `limit` bytes of UTF-8. E_INVALIDARG for null, and for a line feed, a
    /// carriage return or a zero, each of which would end the line.
    template <class Owner, class TextFieldType>
    HRESULT SendText(TextFieldType Owner::*member, BSTR text, std::size_t limit) {
        return QueueText(text, limit, [&](Set& set, const std::string& cut) { (set.*member).Set(cut); });
    }

    /// An index outside the array queues a message without a field.
    template <class Owner, class TextFieldType, std::size_t count>
    HRESULT SendTextElement(std::array<TextFieldType, count> Owner::*member, std::size_t index, BSTR text,
                            std::size_t limit) {
        return QueueText(text, limit, [&](Set& set, const std::string& cut) {
            if (index < count) {
                (set.*member)[index].Set(cut);
            }
        });
    }

    /// A negative value becomes an index outside every table.
    template <class Value>
    static std::size_t IndexOf(Value value) {
        return static_cast<std::size_t>(static_cast<std::int32_t>(value));
    }

    AvailabilitySet CopyAvailability() const {
        QRN::Core::Lock lock(mirrorLock_);
        return availability_;
    }

private:
    /// Firmware that lacks a key must not make a connection hang, so few keys are required besides the blocks.
    bool HasAllAvailability() const REQUIRES(mirrorLock_) {
        if constexpr (hasAvailability) {
            return availabilityReceived_ && HasAllNeeded(availability_);
        } else {
            return true;
        }
    }

    template <class Out, class FieldType>
    static HRESULT Give(Out* out, const FieldType& field) {
        if (!field.IsPresent()) {
            return E_FAIL;
        }
        *out = static_cast<Out>(field.Get());
        return S_OK;
    }
    template <class TextFieldType>
    static HRESULT GiveText(BSTR* out, const TextFieldType& field) {
        if (!field.IsPresent()) {
            return E_FAIL;
        }
        *out = BstrFromUtf8(field.Get());
        return *out != nullptr ? S_OK : E_FAIL;
    }
    template <class Out, class Limit>
    static HRESULT GiveRange(Out* min, Out* max, const Field<Range<Limit>>& range) {
        if (!range.IsPresent()) {
            return E_FAIL;
        }
        *min = static_cast<Out>(range.Get().minimum);
        *max = static_cast<Out>(range.Get().maximum);
        return S_OK;
    }

    /// Bounds are compared as signed numbers: a negative value is never too large.
    template <class Vocabulary, class Value>
    static bool IsOutOfBounds(Value value) {
        return static_cast<std::int32_t>(value) >= static_cast<std::int32_t>(Vocabulary::words.Size());
    }
    /// Makes a message, has `fill` set its fields and queues it, unless `fill` returns a failure.
    template <class Fill>
    HRESULT QueueMessage(Fill fill) {
        try {
            auto message = std::make_unique<TextProtocolMessage<Set>>();
            const HRESULT filled = fill(static_cast<Set&>(*message));
            return filled == S_OK ? queue_.Queue(std::move(message)) : filled;
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        }
    }

    template <class Fill>
    HRESULT QueueText(BSTR text, std::size_t limit, Fill fill) {
        if (text == nullptr || EndsALine(text)) {
            return E_INVALIDARG;
        }
        return QueueMessage([&](Set& set) {
            fill(set, ShortenedUtf8(text, limit));
            return S_OK;
        });
    }
    static bool EndsALine(BSTR text) {
        const OLECHAR* const end = text + SysStringLen(text);
        return std::any_of(static_cast<const OLECHAR*>(text), end,
                           [](OLECHAR unit) { return unit == u'\n' || unit == u'\r' || unit == u'\0'; });
    }

    IUnknown& owner_;
    IMessageQueue& queue_;
    const AvailabilityChange availabilityChange_;

    /// Held only for a copy or a comparison: a getter never waits for the network or an observer.
    mutable QRN::Core::Lockable mirrorLock_;
    Set settings_ GUARDED_BY(mirrorLock_);
    AvailabilitySet availability_ GUARDED_BY(mirrorLock_);
    bool settingsReceived_ GUARDED_BY(mirrorLock_) = false;
    bool availabilityReceived_ GUARDED_BY(mirrorLock_) = false;
};

}  // namespace Morquil
