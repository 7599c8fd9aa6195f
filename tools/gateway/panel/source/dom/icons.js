// Shapes that mean something without their colour. 16 by 16, drawn with one stroke width.
const shapes = {
    ok: 'M3 8.5l3.2 3.2L13 5',
    live: 'M8 8m-3.5 0a3.5 3.5 0 1 0 7 0a3.5 3.5 0 1 0 -7 0',
    waiting: 'M8 2.5a5.5 5.5 0 1 0 5.5 5.5M8 5v3l2 1.5',
    broken: 'M2 14L14 2M9.5 4.5l1.5-1.5a2.1 2.1 0 0 1 3 3l-1.5 1.5M6.5 11.5L5 13a2.1 2.1 0 0 1-3-3l1.5-1.5',
    off: 'M8 8m-5.5 0a5.5 5.5 0 1 0 11 0a5.5 5.5 0 1 0 -11 0M4.2 4.2l7.6 7.6',
    alarm: 'M8 2l6.5 11.5h-13zM8 6.5v3.2M8 11.6v.2',
    lock: 'M3.5 7.5h9v6h-9zM5.5 7.5V5a2.5 2.5 0 0 1 5 0v2.5',
    signal: 'M1.5 8c1.6-5 3.2-5 4.9 0s3.3 5 4.9 0 2-4 3.2-3',
    'no-signal': 'M1.5 8h3M11.5 8h3M5.5 5.5l5 5M10.5 5.5l-5 5',
    cross: 'M4 4l8 8M12 4l-8 8',
    adjusted: 'M2.5 6c2-2.5 4-2.5 5.5-1s3.5 1.5 5.5 -1M2.5 11.500c2-2.5 4-2.5 5.5-1s3.5 1.5 5.5 -1',
    undo: 'M6.5 3L3 6.5 6.5 10M3 6.500h6a4 4 0 0 1 0 8H6',
    star: 'M8 2l1.8 3.9 4.2.5-3.1 2.9.8 4.200L8 11.400l-3.7 2.1.8-4.200L2 6.400l4.2-.5z',
    fleet: 'M2 3h12v4H2zM2 9h12v4H2zM4.5 5v.1M4.5 11v.1',
    history: 'M2 13V3M2 13h12M4.5 10l3-4 2.5 2 3.5-4.5',
    salvos: 'M3 3l5 5-5 5M8.5 3l5 5-5 5',
    people: 'M8 8a2.8 2.8 0 1 0 0-5.600A2.8 2.8 0 0 0 8 8zM2.5 14c.4-3 2.5-4.3 5.5-4.300s5.1 1.3 5.5 4.3',
    theme: 'M8 2.500v11a5.5 5.5 0 0 0 0-11zM8 2.500a5.5 5.5 0 0 0 0 11',
    wall: 'M2 3h5v4H2zM9 3h5v4H9zM2 9h5v4H2zM9 9h5v4H9z',
    list: 'M2 4h12M2 8h12M2 12h12',
    help: 'M5.5 6a2.5 2.5 0 1 1 3.6 2.200C8.3 8.7 8 9 8 10M8 12.300v.2',
    right: 'M6 3l5 5-5 5',
    reference: 'M8 2v12M2 8h12M8 8m-3.5 0a3.5 3.5 0 1 0 7 0a3.5 3.5 0 1 0 -7 0',
};

/** @typedef {keyof typeof shapes} Icon */

const namespace = 'http://www.w3.org/2000/svg';

/** A drawing beside a text that says the same. @param {Icon} name */
export function makeIcon(name) {
    const svg = document.createElementNS(namespace, 'svg');
    svg.setAttribute('viewBox', '0 0 16 16');
    svg.setAttribute('aria-hidden', 'true');
    svg.setAttribute('class', `icon icon-${name}`);
    svg.append(document.createElementNS(namespace, 'path'));
    setIcon(svg, name);
    return svg;
}

/** @param {SVGSVGElement} svg @param {Icon} name */
export function setIcon(svg, name) {
    if (svg.dataset.icon !== name) {
        svg.dataset.icon = name;
        svg.setAttribute('class', `icon icon-${name}`);
        svg.firstElementChild?.setAttribute('d', shapes[name]);
    }
}
