// What the gateway says about the properties: the same for all devices, and read once.

/** @typedef {import('../types').Property} Property */

/** @type {Map<string, Property>} */
let table = new Map();

/** @param {Property[]} rows */
export function setProperties(rows) {
    table = new Map(rows.map((row) => [row.name, row]));
}

/** @param {string} name */
export const findProperty = (name) => table.get(name);

export const allProperties = () => [...table.values()];

/** Whether people can give it a value, as opposed to only reading it or carrying it out. @param {Property} property */
export const isSetting = (property) => property.access === 'read/write';

/** Whether its values can be plotted. @param {Property | undefined} property */
export const isNumeric = (property) => property?.kind === 'number' || property?.kind === 'decimal';
