import { allProperties } from '../model/properties.js';
import { t } from '../text/text.js';
import { make } from '../dom/element.js';
import { AudioMatrix } from './audio_matrix.js';
import { propertiesOf } from './groups.js';
import { PresetList } from './preset_list.js';
import { PropertyRow } from './property_row.js';

/** @typedef {import('../types').Property} Property */
/** @typedef {{update(model: import('../model/device_model.js').DeviceModel): void, element?: HTMLElement}} Part */

/**
 * A heading with its properties.
 * @param {import('./groups.js').Section} section
 * @param {Property[] | null} chosen instead of the section's own
 * @param {Set<string>} favourites
 */
export function makeSection(section, chosen, favourites) {
    const properties = chosen ?? propertiesOf(section, allProperties());
    const title = t(/** @type {any} */ (`section.${section.id}`));
    const parts = makeParts(section, properties, favourites, title);
    return {
        properties,
        element: make('section', { class: `card section-${section.id}`, 'aria-label': title }, make('h3', {}, title), ...parts.map((part) => part.element)),
        /** @param {import('../model/device_model.js').DeviceModel} model */
        update: (model) => parts.forEach((part) => part.update(model)),
    };
}

/** @param {import('./groups.js').Section} section @param {Property[]} properties @param {Set<string>} favourites @param {string} title @returns {Part[]} */
function makeParts(section, properties, favourites, title) {
    if (section.special === 'presets') {
        return [new PresetList()];
    }
    if (section.special) {
        return [new AudioMatrix(properties, title)];
    }
    return properties.map((property) => new PropertyRow(property, favourites.has(property.name)));
}
