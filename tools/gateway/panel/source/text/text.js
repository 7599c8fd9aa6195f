import { english } from './english.js';

/** @typedef {keyof typeof english} TextKey */

/**
 * The text for `key`, with {name} replaced.
 * @param {TextKey} key
 * @param {Record<string, string | number>} [values]
 */
export function t(key, values = {}) {
    return english[key].replace(/\{(\w+)\}/g, (_, name) => String(values[name] ?? ''));
}

/** The text for a word of the gateway, or the word. @param {string} prefix @param {string} word */
export function tWord(prefix, word) {
    const key = `${prefix}.${word}`;
    return key in english ? english[/** @type {TextKey} */ (key)] : word;
}
