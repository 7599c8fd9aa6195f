// The control for a property, chosen by what it holds and by what the device offers now.
import { makeBits } from './controls/bits.js';
import { makeChoice } from './controls/choice.js';
import { makeCommand } from './controls/command.js';
import { makeNumber } from './controls/number.js';
import { makeReading } from './controls/reading.js';
import { makeSegments } from './controls/segments.js';
import { makeTextEntry } from './controls/text_entry.js';

/** @typedef {import('../types').Property} Property */
/** @typedef {import('../types').Offer} Offer */
/** @typedef {import('../types').Value} Value */

/**
 * @typedef {object} Control
 * @property {HTMLElement} element
 * @property {(value: Value | null) => void} show what the device reports
 * @property {(isEnabled: boolean, why: string) => void} enable
 */

/** @typedef {(value: Value | null, gesture?: number) => void} Send */
/** @typedef {{property: Property, offer: Offer, label: string, send: Send, newGesture: () => number}} ControlSetup */

const mostSegments = 4;
const mostLetters = 26;

/** @param {ControlSetup} setup @returns {Control} */
export function makeControl(setup) {
    const { property } = setup;
    if (property.access === 'read') {
        return makeReading(setup);
    }
    if (property.access === 'command') {
        return property.kind === 'bits' ? makeBits(setup) : makeCommand(setup);
    }
    if (property.kind === 'yes/no') {
        return makeSegments(setup, [false, true]);
    }
    const words = offeredWords(setup);
    if (words) {
        return words.length <= mostSegments && words.join('').length <= mostLetters ? makeSegments(setup, words) : makeChoice(setup, words);
    }
    return property.kind === 'number' || property.kind === 'decimal' ? makeNumber(setup) : makeTextEntry(setup);
}

/** @param {ControlSetup} setup */
export function offeredWords({ property, offer }) {
    return property.kind !== 'word' ? null : Array.isArray(offer) ? offer : property.words ?? null;
}

/** Two controls of one shape can stand in for each other. @param {Property} property @param {Offer} offer */
export const shapeOf = (property, offer) => `${property.name} ${JSON.stringify(offer)}`;
