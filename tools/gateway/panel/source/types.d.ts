// The forms of the gateway's JSON, and of what the panel's modules hand each other.

export type Value = string | number | boolean;
export type Range = { min: number, max: number };
export type Offer = Range | string[] | null;

export interface Property {
    name: string;
    kind: 'number' | 'decimal' | 'word' | 'yes/no' | 'text' | 'bits' | 'timecode' | 'address' | 'none';
    access: 'read' | 'read/write' | 'command';
    summary: string;
    words?: string[];
    min?: number;
    max?: number;
    mostBytes?: number;
    unit?: string;
    offer?: 'words' | 'range';
    offerFollows?: string[];
    index?: number;
}

export interface PropertyState {
    value: Value | null;
    last?: Value | null;
    live: boolean;
    age: number | null;
    offer?: Offer;
    changed: string | null;
    origin?: string | null;
    who?: string | null;
}

export interface Link {
    state: string;
    sentence: string;
    since: string;
    lastReport: string | null;
    age: number | null;
}

export interface Summary {
    input: Value | null;
    output: Value | null;
    signalPresent: Value | null;
    referenceLocked: Value | null;
    panelLocked: Value | null;
    remoteLocked: Value | null;
}

export interface Change {
    time: string;
    property: string;
    old: Value | null;
    new: Value | null;
    origin: string;
    who: string | null;
}

export interface Device {
    name: string;
    label: string;
    address: string;
    room: string;
    tags: string[];
    enabled: boolean;
    revision: number;
    model: string | null;
    link: Link;
    summary: Summary;
    alarms: string[];
    lastChange: Change | null;
}

export interface Scope { devices: string, properties: string }

export interface Person {
    user: string | null;
    role: string;
    scopes: Scope[];
    authentication: 'open' | 'password' | 'token';
}

export interface User { name: string, role: string, scopes: Scope[] }

export interface Token { id: string | number, name: string, role: string, scopes: Scope[], expires: string | null }

export interface HistoryRow {
    id: number;
    time: string;
    device: string;
    property: string;
    old: Value | null;
    new: Value | null;
    origin: string;
    who: string | null;
}

export interface AuditRow {
    id: number;
    time: string;
    who: string | null;
    address: string;
    device: string;
    property: string;
    value: Value | null;
    outcome: string;
    status: number;
    requestId: string;
}

export interface Step { device: string, property: string, value: Value }

export interface Salvo { name: string, label: string, steps: Step[], onFailure: 'stop' | 'continue' | 'roll-back' }

export interface RunStep {
    device: string;
    property: string;
    old: Value | null;
    value: Value;
    outcome: string;
    status: number;
    sentence?: string;
    nearest?: Value[];
}

export interface Run { id: string, salvo: string, state: string, dryRun?: boolean, steps: RunStep[] }

export interface Problem { title?: string, detail?: string, nearest?: Value | Value[], outcome?: string, value?: Value, offer?: Offer }

/** What has become of a change that was made here. */
export interface Attempt {
    state: 'pending' | 'confirmed' | 'adjusted' | 'refused' | 'failed';
    value: Value | null;
    text: string;
}
