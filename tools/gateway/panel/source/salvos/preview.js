import { fleet } from '../model/application.js';

/** @typedef {import('../types').Step} Step */
/** @typedef {{step: Step, now: import('../types').Value | null, isConnected: boolean, differs: boolean}} PreviewRow */

/** What a salvo would change now. @param {Step[]} steps @returns {PreviewRow[]} */
export function previewOf(steps) {
    return steps.map((step) => {
        const model = fleet.find(step.device);
        const now = model?.value(step.property) ?? null;
        return { step, now, isConnected: model?.isConnected ?? false, differs: now !== step.value };
    });
}
