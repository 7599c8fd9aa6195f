// What a host pays for following its changes: from a setter to the receipt's answer, compared with the echo in the
// mirror, and how many changes go through the queue with a receipt for each, compared with none.
//   --sets=NUMBER     how often each of the two waits is measured
//   --changes=NUMBER  how many changes go through the queue in a round
#include <atomic>
#include <thread>
#include <vector>

#include "MorquilDelivery.h"
#include "bench/connection_console.h"
#include "bench/connection_host.h"
#include "bench/connection_texts.h"
#include "bench/connection_times.h"
#include "bench/raw_client.h"
#include "bench/result_file.h"

using namespace Morquil::Bench;

namespace {

constexpr int rounds = 7;

/// Counts what it is notified of. Outlives its registrations.
class Counter final : public IMorquilReceiptObserver {
public:
    STDMETHODIMP QueryInterface(REFIID, void** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override { return --references_; }
    STDMETHODIMP Answered(UINT64, UINT, UINT, UINT) override {
        ++answered;
        return S_OK;
    }
    STDMETHODIMP Settled(UINT64, UINT, UINT) override {
        ++settled;
        return S_OK;
    }
    STDMETHODIMP Lost(UINT64, UINT, UINT, UINT, UINT) override { return S_OK; }

    std::atomic<int> answered = 0;
    std::atomic<int> settled = 0;

private:
    std::atomic<ULONG> references_ = 1;
};

template <class IsDone>
void Await(IsDone isDone) {
    while (!isDone()) {
        std::this_thread::yield();
    }
}

/// The host's side of one connection.
class Host {
public:
    Host() : device_(Connect(DeviceAddress(0))) {}

    void SetAndAwaitEcho(int gain) {
        amplifier_->SetGain(gain);
        Await([&] { return Gain() == gain; });
    }
    void SetAndAwaitReceipt(int gain) {
        const int before = counter_.answered;
        const UINT64 receipt = Open();
        amplifier_->SetGain(gain);
        delivery_->MarkReceipt(receipt);
        Await([&] { return counter_.answered != before; });
    }
    /// Two blocks in turn: while one is in flight, the other waits in the queue.
    template <class Set>
    void Pipeline(int changes, Set set) {
        for (int change = 1; change <= changes; ++change) {
            const bool isGain = change % 2 == 0;
            Await([&] { return change <= 2 || (isGain ? Gain() : LineOffset()) == change - 2; });
            set([&] { isGain ? amplifier_->SetGain(change) : reference_->SetLineOffset(change); });
        }
        Await([&] { return Gain() + LineOffset() == 2 * changes - 1; });
    }
    void PipelineWithoutReceipts(int changes) {
        Pipeline(changes, [](auto change) { change(); });
    }
    void PipelineWithReceipts(int changes) {
        const int before = counter_.settled;
        Pipeline(changes, [this](auto change) {
            const UINT64 receipt = Open();
            change();
            delivery_->MarkReceipt(receipt);
        });
        Await([&] { return counter_.settled == before + changes; });
    }
    void AwaitSettled(int receipts) {
        Await([&] { return counter_.settled == receipts; });
    }

private:
    UINT64 Open() {
        UINT64 receipt = 0;
        delivery_->OpenReceipt(&counter_, morquilReceiptThisThread, &receipt);
        return receipt;
    }
    int Gain() const {
        int gain = 0;
        amplifier_->GetGain(&gain);
        return gain;
    }
    int LineOffset() const {
        int offset = 0;
        reference_->GetLineOffset(&offset);
        return offset;
    }

    Counter counter_;
    const Device device_;
    const Reference<IMorquilVideoProcAmp> amplifier_ =
        FeatureOf<IMorquilVideoProcAmp>(device_, IID_IMorquilVideoProcAmp);
    const Reference<IMorquilReference> reference_ = FeatureOf<IMorquilReference>(device_, IID_IMorquilReference);
    const Reference<IMorquilDelivery> delivery_ = FeatureOf<IMorquilDelivery>(device_, IID_IMorquilDelivery);
};

}  // namespace

int main(int argumentCount, char** arguments) {
    const int sets = NumberArgument(argumentCount, arguments, "--sets", 5000);
    const int changes = NumberArgument(argumentCount, arguments, "--changes", 10'000);
    ResultFile results(argumentCount, arguments);
    std::vector<double> echo;
    std::vector<double> receipt;
    std::vector<double> without;
    std::vector<double> with;
    AwaitDevice();
    {
        const Console silent(nullDevice);
        Host host;
        for (int round = 0; round < sets; ++round) {
            echo.push_back(MicrosecondsOf([&] { host.SetAndAwaitEcho(10); }));
            receipt.push_back(MicrosecondsOf([&] { host.SetAndAwaitReceipt(11); }));
            host.AwaitSettled(round + 1);
        }
        for (int round = 0; round < rounds; ++round) {
            without.push_back(MicrosecondsOf([&] { host.PipelineWithoutReceipts(changes); }));
            with.push_back(MicrosecondsOf([&] { host.PipelineWithReceipts(changes); }));
        }
    }
    results.AddMedian("Receipts/Echo", echo, "us");
    results.AddMedian("Receipts/Answered", receipt, "us");
    results.AddMedian("Receipts/PipelineWithout", without, "us");
    results.AddMedian("Receipts/PipelineWith", with, "us");
    return results.Write() ? 0 : 1;
}
