using System.Threading;
using System.Threading.Tasks;

namespace Morquil.Interop
{
    internal static class Waiting
    {
        /// <summary>Returns when a task has ended or the wait is cancelled, whatever is first.</summary>
        internal static async Task OrCancelled(this Task task, CancellationToken cancellation)
        {
            var cancelled = new TaskCompletionSource<bool>(TaskCreationOptions.RunContinuationsAsynchronously);
            using (cancellation.Register(() => cancelled.TrySetResult(true)))
            {
                await Task.WhenAny(task, cancelled.Task).ConfigureAwait(false);
            }
        }
    }
}
