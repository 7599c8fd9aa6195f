// What the sources use of .NET 8, for a compiler that has no .NET 8: the tests read the interfaces that it makes of them,
// and run nothing of it.
using System;
using System.Runtime.InteropServices.Marshalling;

namespace System.Runtime.InteropServices
{
    public enum CreateComInterfaceFlags
    {
        None,
    }
}

namespace System.Runtime.InteropServices.Marshalling
{
    public enum MarshalMode
    {
        Default,
        UnmanagedToManagedIn,
    }

    [AttributeUsage(AttributeTargets.Interface)]
    public sealed class GeneratedComInterfaceAttribute : Attribute
    {
    }

    [AttributeUsage(AttributeTargets.Class)]
    public sealed class GeneratedComClassAttribute : Attribute
    {
    }

    [AttributeUsage(AttributeTargets.Parameter)]
    public sealed class MarshalUsingAttribute : Attribute
    {
        public MarshalUsingAttribute(Type marshaller)
        {
        }
    }

    [AttributeUsage(AttributeTargets.Class, AllowMultiple = true)]
    public sealed class CustomMarshallerAttribute : Attribute
    {
        public CustomMarshallerAttribute(Type managed, MarshalMode mode, Type marshaller)
        {
        }
    }

    public sealed class StrategyBasedComWrappers
    {
        public IntPtr GetOrCreateComInterfaceForObject(object instance, CreateComInterfaceFlags flags) =>
            throw new NotSupportedException();
    }
}
