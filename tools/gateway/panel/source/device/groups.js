// The properties in the groups in which an operator looks for them. A section names patterns of properties; what no
// section names appears under "other", so that nothing a device has is ever missing.
import { matches } from '../model/person.js';

/** @typedef {import('../types').Property} Property */
/** @typedef {{id: string, patterns: string[], special?: 'map' | 'input-map' | 'presets'}} Section */
/** @typedef {{id: string, sections: Section[]}} Group */

/** @type {Group[]} */
export const groups = [
    { id: 'input', sections: [{ id: 'input', patterns: ['input'] }] },
    { id: 'output', sections: [
        { id: 'output', patterns: ['output.video-mode', 'output.aspect-ratio', 'output.pixel-format', 'output.option', 'output.transition-setting'] },
        { id: 'connectors', patterns: ['output.demux-mode', 'output.sdi-mode', 'output.quad-*', 'output.analog-output-mode', 'output.hdmi-output'] },
        { id: 'reference', patterns: ['reference'] }] },
    { id: 'picture', sections: [
        { id: 'proc-amp', patterns: ['proc-amp'] }, { id: 'color', patterns: ['color'] }, { id: 'clip', patterns: ['clip'] },
        { id: 'noise-reduction', patterns: ['noise-reduction'] }, { id: 'advanced', patterns: ['advanced'] }] },
    { id: 'test', sections: [{ id: 'test-pattern', patterns: ['test-pattern'] }] },
    { id: 'geometry', sections: [{ id: 'aspect', patterns: ['aspect'] }, { id: 'aspect-fill', patterns: ['aspect-fill'] }] },
    { id: 'timecode', sections: [{ id: 'timecode', patterns: ['timecode'] }] },
    { id: 'captions', sections: [{ id: 'closed-caption', patterns: ['closed-caption'] }, { id: 'video-index', patterns: ['video-index'] }] },
    { id: 'audio', sections: [
        { id: 'audio', patterns: ['audio.gain', 'audio.delay', 'audio.aes-*', 'audio.meter-*', 'audio.analog-*', 'audio.reset-values'] },
        { id: 'map', patterns: ['audio.map'], special: 'map' },
        { id: 'input-map', patterns: ['audio.input-map'], special: 'input-map' }] },
    { id: '3d', sections: [{ id: '3d', patterns: ['3d'] }] },
    { id: 'presets', sections: [{ id: 'presets', patterns: ['preset'], special: 'presets' }] },
    { id: 'still', sections: [{ id: 'still', patterns: ['output.still-frame-*', 'files'] }] },
    { id: 'system', sections: [{ id: 'device', patterns: ['device'] }, { id: 'network', patterns: ['network'] }] },
];

/** @param {Section} section @param {Property[]} properties */
export const propertiesOf = (section, properties) => properties.filter((property) =>
    section.patterns.some((pattern) => matches(pattern, property.name)));

/** The groups of which there are properties, with a last one for those that no group names. @param {Property[]} properties @returns {Group[]} */
export function groupsOf(properties) {
    const named = new Set(groups.flatMap((group) => group.sections.flatMap((section) => propertiesOf(section, properties))));
    const others = properties.filter((property) => !named.has(property)).map((property) => property.name);
    const used = groups.filter((group) => group.sections.some((section) => propertiesOf(section, properties).length > 0));
    return others.length ? [...used, { id: 'other', sections: [{ id: 'other', patterns: others }] }] : used;
}
