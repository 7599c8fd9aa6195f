/** @typedef {import('../types').Property} Property */
/** @typedef {import('../types').Value} Value */
/** @typedef {{property: Property, here: Value | null, there: Value | null}} Difference */

/**
 * The settings that two devices have different values of.
 * @param {Property[]} properties
 * @param {(property: string) => Value | null} here
 * @param {(property: string) => Value | null} there
 * @returns {Difference[]}
 */
export function differencesOf(properties, here, there) {
    return properties.filter((property) => property.access === 'read/write')
        .map((property) => ({ property, here: here(property.name), there: there(property.name) }))
        .filter((difference) => difference.here !== difference.there);
}
