using System;
using System.Collections.Generic;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using System.Text.RegularExpressions;
using Morquil.Interop;

namespace Morquil.Tests
{
    /// <summary>The compiled interfaces against the interface definitions: every slot, parameter, type and
    /// number.</summary>
    public static class ContractTests
    {
        private static readonly IdlReader Idl = new IdlReader();

        private static Assembly Own => typeof(MorquilDevice).Assembly;

        [Test]
        public static void EveryInterfaceOfTheDefinitionsIsThere() =>
            Expect.Sequence(Idl.Interfaces.Keys.OrderBy(name => name), InterfacesOf(Own).Select(type => type.Name));

        [Test]
        public static void EverySlotAndTypeIsThatOfTheDefinitions() => CheckInterfaces(Own);

        [Test]
        public static void TheInterfacesAreThoseOfTheRuntimesComSupport()
        {
            foreach (var type in InterfacesOf(Own))
            {
                Expect.True(type.IsImport, $"{type.Name} is not [ComImport]");
                Expect.Equal(ComInterfaceType.InterfaceIsIUnknown,
                             type.GetCustomAttribute<InterfaceTypeAttribute>()?.Value, type.Name);
            }
        }

        [Test]
        public static void TextsOfTheRuntimesComSupportAreBstrs()
        {
            var texts = from type in InterfacesOf(Own)
                        from method in type.GetMethods()
                        from parameter in method.GetParameters()
                        where TypeOf(parameter) == typeof(string)
                        select parameter;
            var methods = Idl.Interfaces.Values.SelectMany(each => each.Methods);
            Expect.Equal(methods.Count(method => method.Contains("BSTR")), texts.Count());
            foreach (var text in texts)
            {
                var attribute = text.GetCustomAttribute<MarshalAsAttribute>();
                Expect.Equal(UnmanagedType.BStr, attribute?.Value, text.Member.Name);
            }
        }

        [Test]
        public static void EveryNumberOfAnEnumerationIsThatOfTheDefinitions() => CheckEnumerations(Own);

        [Test]
        public static void TheSourceGeneratedInterfacesHaveTheSameSlotsAndTypes()
        {
            var other = Assembly.LoadFrom(Environment.GetEnvironmentVariable("MORQUIL_SOURCE_GENERATED"));
            Expect.Sequence(InterfacesOf(Own).Select(type => type.Name), InterfacesOf(other).Select(type => type.Name));
            CheckInterfaces(other);
            CheckEnumerations(other);
            foreach (var type in InterfacesOf(other))
            {
                var attributes = type.GetCustomAttributesData().Select(each => each.AttributeType.Name);
                Expect.True(!type.IsImport && attributes.Contains("GeneratedComInterfaceAttribute"), type.Name);
            }
        }

        [Test]
        public static void TheLayerCallsTheSlotsOfTheDefinitions()
        {
            var own = typeof(Slots).GetNestedTypes(BindingFlags.NonPublic).ToDictionary(type => type.Name);
            Expect.Equal(Idl.Interfaces.Count, own.Count);
            foreach (var defined in Idl.Interfaces)
            {
                var type = own[defined.Key.Substring("IMorquil".Length).Replace("3dMode", "Mode3d")];
                var fields = type.GetFields(BindingFlags.NonPublic | BindingFlags.Static)
                    .ToDictionary(field => field.Name);
                Expect.Equal(defined.Value.Id, fields["Id"].GetValue(null), type.Name);
                Expect.Equal(defined.Value.Methods.Count + 1, fields.Count, type.Name);
                // After the three of IUnknown.
                var slot = 3;
                foreach (var method in defined.Value.Methods)
                {
                    var name = method.Substring(0, method.IndexOf('(')).Split(' ')[1];
                    Expect.Equal(slot++, fields[name].GetRawConstantValue(), $"{type.Name}.{name}");
                }
            }
        }

        private static IEnumerable<Type> InterfacesOf(Assembly assembly) =>
            assembly.GetExportedTypes().Where(type => type.IsInterface).OrderBy(type => type.Name);

        private static void CheckInterfaces(Assembly assembly)
        {
            foreach (var type in InterfacesOf(assembly))
            {
                var defined = Idl.Interfaces[type.Name];
                Expect.Equal(defined.Id, type.GUID, type.Name);
                Expect.Equal("IUnknown", defined.Base, type.Name);
                Expect.Equal(0, type.GetInterfaces().Length, type.Name);
                // The runtime numbers methods in the order of their tokens.
                var methods = type.GetMethods().OrderBy(method => method.MetadataToken).ToList();
                Expect.Sequence(defined.Methods, methods.Select(AsDefined), type.Name);
                Expect.True(methods.All(IsPreserved), $"{type.Name}: [PreserveSig]");
            }
        }

        private static bool IsPreserved(MethodInfo method) =>
            (method.GetMethodImplementationFlags() & MethodImplAttributes.PreserveSig) != 0;

        private static Type TypeOf(ParameterInfo parameter) =>
            parameter.ParameterType.IsByRef ? parameter.ParameterType.GetElementType() : parameter.ParameterType;

        /// <summary>A method in the notation of the definitions.</summary>
        private static string AsDefined(MethodInfo method)
        {
            var parameters = method.GetParameters().Select(parameter => AsDefined(method, parameter));
            var result = method.ReturnType == typeof(int) ? "HRESULT" : method.ReturnType.Name;
            return $"{result} {method.Name}({string.Join(", ", parameters)})";
        }

        private static string AsDefined(MethodInfo method, ParameterInfo parameter)
        {
            var isOut = parameter.ParameterType.IsByRef;
            Expect.Equal(isOut, parameter.IsOut, $"{method.Name}: {parameter.Name}");
            var type = TypeOf(parameter);
            var pointers = (isOut ? "*" : "") + (type.IsInterface ? "*" : "");
            return $"[{(isOut ? "out" : "in")}] {NameOf(type, method, parameter)}{pointers} {parameter.Name}";
        }

        private static string NameOf(Type type, MethodInfo method, ParameterInfo parameter)
        {
            if (type.IsEnum)
            {
                Expect.Equal(typeof(int), Enum.GetUnderlyingType(type), type.Name);
                return EnumerationNames[type.Name];
            }
            // A yes or no is a long, which has 32 bits here as an int has.
            if (type == typeof(int) && IsLong(method, parameter))
            {
                return "long";
            }
            var names = new Dictionary<Type, string>
            {
                { typeof(int), "int" }, { typeof(uint), "unsigned int" }, { typeof(double), "double" },
                { typeof(ulong), "unsigned __int64" }, { typeof(string), "BSTR" },
            };
            return names.TryGetValue(type, out var name) ? name : type.Name;
        }

        private static bool IsLong(MethodInfo method, ParameterInfo parameter) =>
            Idl.Interfaces[method.DeclaringType.Name].Methods.Any(
                each => Regex.IsMatch(each, $@" {method.Name}\(.*\] long\*? {parameter.Name}\b"));

        /// <summary>The name in the definitions for each name here.</summary>
        private static readonly Dictionary<string, string> EnumerationNames = Idl.Enumerations.Keys.ToDictionary(name =>
            name == "_MorquilConnectToFailure" ? "ConnectFailure"
            : name == "_MorquilPropertySetId" ? "PropertySet"
            : Regex.Replace(name, "^_Morquil(API)?(3d)?(.*)$", "$3$2"));

        private static void CheckEnumerations(Assembly assembly)
        {
            // Two limits, not a choice.
            var wanted = Idl.Enumerations.Where(each => each.Key != "_MorquilAPIAudioMaxChannels");
            foreach (var defined in wanted)
            {
                var name = EnumerationNames.Single(each => each.Value == defined.Key).Key;
                var type = assembly.GetType("Morquil." + name, true);
                var fields = type.GetFields(BindingFlags.Public | BindingFlags.Static)
                    .OrderBy(field => field.MetadataToken).ToList();
                Expect.Sequence(defined.Value.Select(each => each.Value),
                                fields.Select(field => Convert.ToInt64(field.GetRawConstantValue())), type.Name);
                foreach (var pair in defined.Value.Zip(fields, (constant, field) => new { constant.Key, field.Name }))
                {
                    Expect.True(IsShortFor(pair.Name, pair.Key), $"{type.Name}: {pair.Name} is not {pair.Key}");
                }
            }
        }

        /// <summary>Names here are the ends of the defined ones; those that would begin with a digit, or would be one
        /// letter, begin with a word.</summary>
        private static bool IsShortFor(string name, string constant)
        {
            var defined = Regex.Replace(constant, "PropertySetId$", "");
            return defined.EndsWith(name) || defined.EndsWith(Regex.Replace(name, "^[A-Z][a-z]+(?=[0-9A-F])", ""))
                || Regex.IsMatch(constant, $"3d{name.Replace("3d", "")}PropertySetId$");
        }
    }
}
