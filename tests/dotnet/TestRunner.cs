using System;
using System.Collections.Generic;
using System.Linq;
using System.Reflection;
using System.Threading;
using Morquil.Interop;

namespace Morquil.Tests
{
    /// <summary>A test; its name is a sentence.</summary>
    [AttributeUsage(AttributeTargets.Method)]
    public sealed class TestAttribute : Attribute
    {
    }

    public sealed class ExpectationException : Exception
    {
        public ExpectationException(string message) : base(message)
        {
        }
    }

    public static class Expect
    {
        /// <summary>The longest wait for anything that has to happen.</summary>
        public static readonly TimeSpan Soon = TimeSpan.FromSeconds(60);

        public static void True(bool condition, string what)
        {
            if (!condition)
            {
                throw new ExpectationException(what);
            }
        }

        public static void Equal(object expected, object actual, string what = "")
        {
            True(Equals(expected, actual), $"{what}: expected {Text(expected)}, actual {Text(actual)}");
        }

        public static void Sequence<T>(IEnumerable<T> expected, IEnumerable<T> actual, string what = "") =>
            Equal(string.Join("\n", expected), string.Join("\n", actual), what);

        public static T Throws<T>(Action action, string part = "") where T : Exception
        {
            try
            {
                action();
            }
            catch (T error)
            {
                True(error.Message.Contains(part), $"'{error.Message}' does not contain '{part}'");
                return error;
            }
            catch (AggregateException error) when (error.InnerException is T)
            {
                return (T)error.InnerException;
            }
            throw new ExpectationException($"no {typeof(T).Name}");
        }

        /// <summary>Waits for a condition that another thread brings about.</summary>
        public static void Eventually(Func<bool> condition, string what) =>
            True(SpinWait.SpinUntil(condition, Soon), $"not within {Soon.TotalSeconds} s: {what}");

        private static string Text(object value) => value is string text ? $"'{text}'" : value?.ToString() ?? "null";
    }

    public static class TestRunner
    {
        public static bool IsLong => Environment.GetEnvironmentVariable("MORQUIL_LONG") == "1";

        /// <summary>Runs all tests, or those whose names contain the argument; or ends as a test wants.</summary>
        public static int Main(string[] arguments)
        {
            if (arguments.Length == 2)
            {
                Endings.All[arguments[0]](arguments[1]);
                return 0;
            }
            var wanted = arguments.FirstOrDefault() ?? "";
            var failed = 0;
            foreach (var test in Tests().Where(test => NameOf(test).Contains(wanted)))
            {
                var problem = Run(test);
                Console.WriteLine($"  {(problem == null ? "ok    " : "FAILED")}  {NameOf(test)}");
                Console.Write(problem == null ? "" : problem + "\n");
                failed += problem == null ? 0 : 1;
            }
            return failed == 0 ? 0 : 1;
        }

        private static IEnumerable<MethodInfo> Tests() =>
            from type in typeof(TestRunner).Assembly.GetTypes()
            from method in type.GetMethods(BindingFlags.Static | BindingFlags.Public | BindingFlags.DeclaredOnly)
            where method.GetCustomAttribute<TestAttribute>() != null
            orderby type.Name, method.MetadataToken
            select method;

        private static string NameOf(MethodInfo test) => $"{test.DeclaringType.Name}.{test.Name}";

        /// <summary>Why a test has failed; null if it has passed, and left no connection.</summary>
        private static string Run(MethodInfo test)
        {
            try
            {
                ((Action)Delegate.CreateDelegate(typeof(Action), test))();
                return OpenObjects.Count == 0 ? null : $"{OpenObjects.Count} connections or sessions are still open";
            }
            catch (Exception error)
            {
                return error.ToString();
            }
        }
    }
}
