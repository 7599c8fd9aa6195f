import { hasProblem } from './conditions.js';

/** @typedef {import('../model/device_model.js').DeviceModel} DeviceModel */
/** @typedef {{text: string, room: string, tag: string, problems: boolean}} Filter */

/** @param {DeviceModel} model @param {Filter} filter */
export function isShown(model, { text, room, tag, problems }) {
    const { device } = model;
    return (!room || device.room === room) && (!tag || device.tags.includes(tag)) && (!problems || hasProblem(model)) &&
        text.toLowerCase().split(/\s+/).every((word) => searchText(device).includes(word));
}

/** @param {import('../types').Device} device */
function searchText(device) {
    const { name, label, address, room, tags, model, summary, alarms, link } = device;
    return [name, label, address, room, ...tags, model, summary.input, summary.output, ...alarms, link.state].join(' ').toLowerCase();
}

/** @param {DeviceModel[]} models */
export const roomsOf = (models) => [...new Set(models.map(({ device }) => device.room))].filter(Boolean).sort();

/** @param {DeviceModel[]} models */
export const tagsOf = (models) => [...new Set(models.flatMap(({ device }) => device.tags))].sort();
