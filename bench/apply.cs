//   apply.exe ADDRESS [async]
// As apply.cpp, through the C# layer: for each line of standard input, which is a number, it sets a value so many times,
// each time until the device has confirmed it, and prints the microseconds of each on one line. With the argument "async"
// it awaits each.
using System;
using System.Diagnostics;
using System.Globalization;
using System.Linq;
using System.Threading.Tasks;
using Morquil;

static class Program
{
    static void Main(string[] arguments)
    {
        var isAsync = arguments.Contains("async");
        using (var device = MorquilDevice.Connect(arguments[0]))
        {
            var gain = 0;
            for (string line; (line = Console.ReadLine()) != null;)
            {
                var times = new double[int.Parse(line)];
                var setting = isAsync ? SetAsync(device, times, gain) : Task.FromResult(Set(device, times, gain));
                gain = setting.GetAwaiter().GetResult();
                var texts = times.Select(time => time.ToString("F1", CultureInfo.InvariantCulture));
                Console.WriteLine(string.Join(" ", texts));
            }
        }
    }

    static int Set(MorquilDevice device, double[] times, int gain)
    {
        for (var each = 0; each < times.Length; ++each)
        {
            gain = (gain + 1) % 50;
            var watch = Stopwatch.StartNew();
            Expect(device.Set("proc-amp.gain", gain));
            times[each] = watch.Elapsed.TotalMilliseconds * 1000;
        }
        return gain;
    }

    static async Task<int> SetAsync(MorquilDevice device, double[] times, int gain)
    {
        for (var each = 0; each < times.Length; ++each)
        {
            gain = (gain + 1) % 50;
            var watch = Stopwatch.StartNew();
            Expect(await device.SetAsync("proc-amp.gain", gain));
            times[each] = watch.Elapsed.TotalMilliseconds * 1000;
        }
        return gain;
    }

    static void Expect(Outcome outcome)
    {
        if (!outcome.IsApplied)
        {
            throw new InvalidOperationException("the device has not confirmed the change");
        }
    }
}
