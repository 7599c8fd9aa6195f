// Uses the C++ layer as a host does, so that its templates are compiled, too.
#include <morquil.hpp>

std::string Use(const morquil::Device& device, const morquil::Session& session) {
    const auto amp = device.VideoProcAmp();
    const auto change = [&] { amp.SetGain(amp.GetGainRange().max); };
    const morquil::Subscription reports = device.OnReport([](const morquil::Report&) {});
    const morquil::Subscription changes = device.OnChange(morquil::PropertySet::VideoProcAmp, [](auto) {});
    const morquil::Subscription values =
        device.OnPropertyChange("proc-amp", [](const morquil::PropertyChange& one) { one.after->Text(); });
    const morquil::Property mode = device["output.video-mode"];
    mode.Set(mode.Text());
    mode.Apply(mode.Get<morquil::VideoMode>());
    device["proc-amp.gain"].Set(device["proc-amp.gain"].GetRange<int>().max);
    device["aspect.size-x"].Set(device.Properties("aspect").front().Get<double>());
    device["timecode.start"].Set();
    const morquil::Subscription pending = device.ApplyAsync(change, [](const morquil::Outcome&) {});
    const morquil::Outcome later = device.ApplyAsync(change).get();
    const morquil::Outcome now = session.Apply([](const morquil::Device& current) { current.SetPanelLock(true); });
    const HRESULT result = device.Raw()->SetPanelLock(FAILED(E_FAIL) ? 1 : 0);
    morquil::SetLibraryOutput([](const std::string&) {});
    return result == S_OK && device.Apply(change) == later ? ToText(now) : device.GetDeviceName();
}
