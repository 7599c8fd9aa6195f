// What an operator has to look at: a link that is not there, or else what the gateway finds wrong with the device.
import { markOf } from './link_mark.js';

/** @typedef {import('../model/device_model.js').DeviceModel} DeviceModel */
/** @typedef {import('./link_mark.js').Mark} Mark */

/** @param {DeviceModel} model @returns {Mark[]} */
export function conditionsOf(model) {
    const { link, alarms, summary, enabled } = model.device;
    if (!model.isConnected) {
        return enabled ? [markOf(link)] : [];
    }
    const tone = summary.signalPresent === false ? 'alarm' : 'warning';
    return alarms.map((text) => ({ icon: 'alarm', tone, text: text.charAt(0).toUpperCase() + text.slice(1) }));
}

/** @param {DeviceModel} model */
export const hasProblem = (model) => conditionsOf(model).some((mark) => mark.tone !== 'waiting');

/** @param {DeviceModel} model @returns {Mark['tone']} */
export const toneOf = (model) => (conditionsOf(model)[0] ?? markOf(model.device.link)).tone;
