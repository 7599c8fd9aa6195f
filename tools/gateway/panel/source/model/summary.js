/** @typedef {import('../types').Summary} Summary */

/** Which property tells which part of a device's summary. @type {Record<string, keyof Summary>} */
export const summaryParts = {
    'input.video-mode': 'input',
    'output.video-mode': 'output',
    'input.signal-present': 'signalPresent',
    'reference.signal-locked': 'referenceLocked',
    'device.panel-lock': 'panelLocked',
    'device.remote-lock': 'remoteLocked',
};

/** @returns {Summary} */
export const emptySummary = () => ({
    input: null, output: null, signalPresent: null, referenceLocked: null, panelLocked: null, remoteLocked: null,
});
