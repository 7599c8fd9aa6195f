// Addresses within the panel: #/device/NAME/GROUP?key=value

/** @typedef {{view: string, parts: string[], query: URLSearchParams}} Route */

/** @returns {Route} */
export function currentRoute() {
    const [path, query] = location.hash.replace(/^#\/?/, '').split('?');
    const [view, ...parts] = path.split('/').filter(Boolean).map(decodeURIComponent);
    return { view: view ?? 'fleet', parts, query: new URLSearchParams(query) };
}

/** @param {string} view @param {string[]} [parts] @param {Record<string, string>} [query] */
export function linkTo(view, parts = [], query = {}) {
    const path = [view, ...parts].map(encodeURIComponent).join('/');
    const text = new URLSearchParams(query).toString();
    return `#/${path}${text ? `?${text}` : ''}`;
}

/** @param {string} link */
export function go(link) {
    location.hash = link;
}
