using System;
using System.Collections.Generic;
using System.Linq;
using Morquil.Interop;

namespace Morquil.Tests
{
    /// <summary>Properties by name: their values, what is offered, what is refused before anything is sent.</summary>
    public static class PropertyTests
    {
        [Test]
        public static void EveryKnownPropertyHasAValueOfItsType() => DeviceTests.WithDevice((device, simulated) =>
        {
            var values = device.Values();
            Expect.True(values.Count > 100, $"{values.Count} values");
            foreach (var pair in values)
            {
                Expect.Equal(Property.Find(pair.Key).ValueType, pair.Value.GetType(), pair.Key);
            }
        });

        [Test]
        public static void EveryPropertyCanBeSetToWhatItHas() => DeviceTests.WithDevice((device, simulated) =>
        {
            var set = 0;
            foreach (var pair in device.Values().Where(pair => Property.Find(pair.Key).IsWritable))
            {
                var offer = device.Offered(pair.Key);
                if (offer == null || offer.Contains(pair.Value))
                {
                    Expect.Equal(0u, device.Set(pair.Key, pair.Value).Refused, pair.Key);
                    ++set;
                }
            }
            Expect.True(set > 60, $"{set} properties");
        });

        [Test]
        public static void AGetterAnswersWhatTheDeviceHasReported() => DeviceTests.WithDevice((device, simulated) =>
        {
            Expect.Equal(VideoMode.Mode1080i50, device.Get("output.video-mode"));
            Expect.Equal("10:00:00:00", device.Get("Timecode.Generate-Value"));
            Expect.Equal("Morquil Simulator", device.Get<string>("device.name"));
            Expect.Throws<NotKnownException>(() => device.Get("timecode.start"), "is a command");
        });

        [Test]
        public static void WhatIsOfferedFollowsTheDevice() => DeviceTests.WithDevice((device, simulated) =>
        {
            Expect.Equal("-60 to 60", device.Offered("proc-amp.gain").ToString());
            Expect.True(device.Offered("output.video-mode").Values.Contains(VideoMode.Mode1080p50), "1080p50");
            Expect.True(!device.Offered("output.video-mode").Contains(VideoMode.Mode1080p60), "1080p60");
            Expect.True(device.Offered("output.aspect-ratio").Values.Count > 0, "aspect ratios");
            Expect.True(device.Offered("timecode.input-line").IsRange, "input line");
            Expect.True(device.Offered("reference.line-offset").IsRange, "line offset");
            Expect.True(device.Offered("advanced.frc-aperture").Values.Count > 0, "aperture");
            Expect.Equal(device.Preset.GetPresetRange().Max + 2, device.Offered("preset.recall").Max);
            Expect.Equal(null, device.Offered("device.name"));
        });

        [Test]
        public static void AValueThatIsNotOfferedIsNotSent() => DeviceTests.WithDevice((device, simulated) =>
        {
            var range = Expect.Throws<InvalidValueException>(
                () => device.Set("proc-amp.gain", 99), "proc-amp.gain: 99 is outside -60 to 60");
            Expect.Sequence(new object[] { 60 }, range.Nearest);
            var mode = Expect.Throws<NotOfferedException>(
                () => device.Set("output.video-mode", "1080p60"), "1080p60 is not offered now; nearest: 1080p50");
            Expect.Equal(VideoMode.Mode1080p50, mode.Nearest[0]);
        });

        [Test]
        public static void AValueOfAnotherTypeIsNotSent() => DeviceTests.WithDevice((device, simulated) =>
        {
            foreach (var bad in new Dictionary<string, object[]>
                     {
                         { "proc-amp.gain", new object[] { "12", 1.5, true, null, 1L << 40 } },
                         { "aspect.size-x", new object[] { "1", double.NaN, double.PositiveInfinity } },
                         { "network.name", new object[] { 5, "two\nlines", "\ud800", new string('x', 50) } },
                         { "timecode.generate-value", new object[] { "24:00:00:00", "1:2:3:4", 5, "0a:00:00:00" } },
                         { "device.panel-lock", new object[] { 1, "true" } },
                         { "output.video-mode", new object[] { AspectRatio.Smart, "1080i51", 7, (VideoMode)99 } },
                         { "timecode.start", new object[] { 1 } },
                     }.SelectMany(pair => pair.Value.Select(value => Tuple.Create(pair.Key, value))))
            {
                var error = Expect.Throws<InvalidValueException>(() => device.Set(bad.Item1, bad.Item2), bad.Item1);
                Expect.Equal(typeof(InvalidValueException), error.GetType(), bad.Item1);
            }
            Expect.Throws<ReadOnlyException>(() => device.Set("device.name", "x"), "device.name can only be read");
        });

        [Test]
        public static void AMisspeltNameIsAnsweredWithTheNearest() => DeviceTests.WithDevice((device, simulated) =>
        {
            var name = Expect.Throws<NoSuchPropertyException>(
                () => device.Get("proc-amp.gian"), "there is no property 'proc-amp.gian'; nearest: proc-amp.gain");
            Expect.Equal("proc-amp.gain", name.Nearest);
            var word = Expect.Throws<InvalidValueException>(
                () => device.Set("output.video-mode", "1080i51"), "nearest: 1080i50");
            Expect.Equal(VideoMode.Mode1080i50, word.Nearest[0]);
        });

        [Test]
        public static void PatternsSelectProperties()
        {
            Expect.Sequence(new[] { "color.red", "color.green", "color.blue", "color.reset-values" },
                            Property.Matching("color").Select(row => row.Name));
            Expect.True(Property.Matching("preset.name.?").Count >= 6, "presets");
            Expect.Equal("color.red", Property.Matching("COLOR.RED").Single().Name);
            Expect.Throws<NoSuchPropertyException>(() => Property.Matching("nothing-like-it"));
        }

        [Test]
        public static void WordsAreThoseOfDevices()
        {
            Expect.Equal("625i50 PAL", VideoMode.PAL.ToWord());
            Expect.Equal(VideoMode.PAL, Words.Parse<VideoMode>("625I50 pal"));
            var error = Expect.Throws<InvalidValueException>(() => Words.Parse<VideoMode>("625i50 PAX"));
            Expect.Equal(VideoMode.PAL, error.Nearest[0]);
            Expect.Equal("99", ((VideoMode)99).ToWord());
            Expect.Equal(34, Words.All<VideoMode>().Count);
        }

        [Test]
        public static void TextsOfEveryLanguageComeBackAsTheyWere() => DeviceTests.WithDevice((device, simulated) =>
        {
            foreach (var text in new[] { "Überwachung", "スタジオ", "😀 studio", "a, b: c" })
            {
                device.Set("network.name", text);
                Expect.Equal(text, device.Get("network.name"));
            }
        });

        [Test]
        public static void ValuesReadAsPeopleWriteThem()
        {
            Expect.Equal("true", Words.ToText(true));
            Expect.Equal("1.5", Words.ToText(1.5));
            Expect.Equal("1080i50", Words.ToText(VideoMode.Mode1080i50));
            Expect.Equal("", Words.ToText(null));
            Expect.Equal("192.168.1.10", Formats.Address(0xC0A8010A));
            Expect.Equal(0x01020304u, Formats.ParseTimecode("01:02:03;04"));
        }

        [Test]
        public static void LinesDependOnTheFrameHeight()
        {
            Expect.Sequence(new[] { 486u, 576u, 720u, 1080u, 1080u, 2160u },
                            new[] { VideoMode.NTSCp, VideoMode.PAL, VideoMode.Mode720p50, VideoMode.Mode1080i50,
                                    VideoMode.Mode2K1080p24, VideoMode.UHDp25 }.Select(Formats.FrameHeight));
        }
    }
}
