<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="en">
<context>
    <name>VelmoraDocument</name>
    <message>
        <source>Patient</source>
        <translation>Patient</translation>
    </message>
    <message>
        <source>&amp;Identifier</source>
        <translation>&amp;Identifiant</translation>
    </message>
    <message>
        <source>Identifier</source>
        <translation>Identifiant</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>&amp;Born</source>
        <translation>&amp;Naissance</translation>
    </message>
    <message>
        <source>Birth date</source>
        <translation>Date de naissance</translation>
    </message>
    <message>
        <source>&amp;Sex</source>
        <translation>&amp;Sexe</translation>
    </message>
    <message>
        <source>Sex</source>
        <translation>Sexe</translation>
    </message>
    <message>
        <source>Female</source>
        <translation>Féminin</translation>
    </message>
    <message>
        <source>Male</source>
        <translation>Masculin</translation>
    </message>
    <message>
        <source>Examination</source>
        <translation>Examen</translation>
    </message>
    <message>
        <source>Exa&amp;mined</source>
        <translation>Exa&amp;men</translation>
    </message>
    <message>
        <source>Exam date</source>
        <translation>Date de l’examen</translation>
    </message>
    <message>
        <source>Age</source>
        <translation>Âge</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Précédent</translation>
    </message>
    <message>
        <source>Previous examination (Left Arrow)</source>
        <translation>Examen précédent (flèche gauche)</translation>
    </message>
    <message>
        <source>Examination number</source>
        <translation>Numéro de l’examen</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Suivant</translation>
    </message>
    <message>
        <source>Next examination (Right Arrow)</source>
        <translation>Examen suivant (flèche droite)</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Nouveau</translation>
    </message>
    <message>
        <source>Add an examination</source>
        <translation>Ajouter un examen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Remove this examination</source>
        <translation>Retirer cet examen</translation>
    </message>
    <message>
        <source>&amp;Weight (kg)</source>
        <translation>&amp;Poids (kg)</translation>
    </message>
    <message>
        <source>Weight in kilograms</source>
        <translation>Poids en kilogrammes</translation>
    </message>
    <message>
        <source>Weight in kilograms, z-score and centile</source>
        <translation>Poids en kilogrammes, score z et percentile</translation>
    </message>
    <message>
        <source>Hei&amp;ght (cm)</source>
        <translation>&amp;Taille (cm)</translation>
    </message>
    <message>
        <source>Length or height in centimetres</source>
        <translation>Longueur ou taille en centimètres</translation>
    </message>
    <message>
        <source>Length or height in centimetres, z-score and centile</source>
        <translation>Longueur ou taille en centimètres, score z et percentile</translation>
    </message>
    <message>
        <source>Hea&amp;d (cm)</source>
        <translation>Têt&amp;e (cm)</translation>
    </message>
    <message>
        <source>Head circumference in centimetres</source>
        <translation>Périmètre crânien en centimètres</translation>
    </message>
    <message>
        <source>Head circumference in centimetres, z-score and centile</source>
        <translation>Périmètre crânien en centimètres, score z et percentile</translation>
    </message>
    <message>
        <source>Weight</source>
        <translation>Poids</translation>
    </message>
    <message>
        <source>Height</source>
        <translation>Taille</translation>
    </message>
    <message>
        <source>Head</source>
        <translation>Tête</translation>
    </message>
    <message>
        <source>Weight (kg)</source>
        <translation>Poids (kg)</translation>
    </message>
    <message>
        <source>Length or height (cm)</source>
        <translation>Longueur ou taille (cm)</translation>
    </message>
    <message>
        <source>Head circumference (cm)</source>
        <translation>Périmètre crânien (cm)</translation>
    </message>
    <message>
        <source>Choose the sex to see the reference</source>
        <translation>Choisissez le sexe pour voir la référence</translation>
    </message>
    <message>
        <source>girls</source>
        <translation>filles</translation>
    </message>
    <message>
        <source>boys</source>
        <translation>garçons</translation>
    </message>
    <message>
        <source>Age (months)</source>
        <translation>Âge (mois)</translation>
    </message>
    <message>
        <source>This is not a number.</source>
        <translation>Ce n’est pas un nombre.</translation>
    </message>
    <message>
        <source>A measurement is above zero.</source>
        <translation>Une mesure est supérieure à zéro.</translation>
    </message>
    <message>
        <source>The examination lies before the birth.</source>
        <translation>L’examen précède la naissance.</translation>
    </message>
    <message>
        <source>Needs birth and exam date.</source>
        <translation>Il faut les dates de naissance et d’examen.</translation>
    </message>
    <message>
        <source>Needs the sex.</source>
        <translation>Il faut le sexe.</translation>
    </message>
    <message>
        <source>No reference.</source>
        <translation>Pas de référence.</translation>
    </message>
    <message>
        <source>The reference does not cover this age.</source>
        <translation>La référence ne couvre pas cet âge.</translation>
    </message>
    <message>
        <source>Beyond what the reference describes.</source>
        <translation>Au-delà de ce que décrit la référence.</translation>
    </message>
    <message>
        <source>z-score %1, centile %2</source>
        <translation>score z %1, percentile %2</translation>
    </message>
    <message>
        <source>%ld y %ld m %ld d</source>
        <translation>%ld a %ld m %ld j</translation>
    </message>
    <message>
        <source>The file is damaged (%1).</source>
        <translation>Le fichier est endommagé (%1).</translation>
    </message>
</context>
</TS>
